// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A framed area that looks transparent over the background of its view.
Rectangle {
    id: panel

    required property WindowView view
    readonly property Properties prop: panel.view.prop
    property color frameFrom: Colors.frameTop
    property color frameTo: Colors.frameBottom

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
                color: panel.view.colorBehind(inside, 0)
            }
            GradientStop {
                position: 1
                color: panel.view.colorBehind(inside, inside.height)
            }
        }
    }
}
