// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The vertical gradient behind every view.
Rectangle {
    id: background

    property color from: Colors.backgroundTop
    property color to: Colors.backgroundBottom

    anchors.fill: parent
    gradient: Gradient {
        GradientStop {
            position: 0
            color: background.from
        }
        GradientStop {
            position: 1
            color: background.to
        }
    }
}
