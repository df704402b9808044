// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A framed area that looks transparent over the background of its view.
Rectangle {
    id: panel

    required property Properties prop
    required property Functions mainFunctions
    required property Background background
    /// Counts up when the view has been laid out anew.
    required property int recalc
    property color frameFrom: "#ffffff"
    property color frameTo: "#4c63bc"

    gradient: Gradient {
        GradientStop {
            position: 0
            color: panel.frameFrom
        }
        GradientStop {
            position: 1
            color: panel.frameTo
        }
    }

    Rectangle {
        id: inside

        anchors.fill: parent
        anchors.margins: panel.prop.lineWidth
        radius: Math.max(0, panel.radius - panel.prop.scf)
        gradient: Gradient {
            GradientStop {
                position: 0
                color: panel.mainFunctions.interpolateColor(panel.background, inside, 0, panel.recalc)
            }
            GradientStop {
                position: 1
                color: panel.mainFunctions.interpolateColor(panel.background, inside, inside.height, panel.recalc)
            }
        }
    }
}
