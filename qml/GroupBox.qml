// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A titled panel. Its content lies over it, in the middle.
Item {
    id: box

    required property WindowView view
    readonly property Properties prop: box.view.prop
    property string label
    default property alias content: area.data

    implicitHeight: 70 * box.prop.scf
    Accessible.role: Accessible.Grouping
    Accessible.name: box.label

    Panel {
        anchors.fill: parent
        anchors.topMargin: title.height / 2
        view: box.view
        frameTo: Colors.groupFrameBottom
        radius: 8 * box.prop.scf
    }

    Rectangle {
        id: title

        x: 14 * box.prop.scf
        width: caption.implicitWidth + 12 * box.prop.scf
        height: caption.implicitHeight
        visible: box.label !== ""
        gradient: Gradient {
            GradientStop {
                position: 0
                color: box.view.colorBehind(title, 0)
            }
            GradientStop {
                position: 1
                color: box.view.colorBehind(title, title.height)
            }
        }

        Text {
            id: caption

            anchors.centerIn: parent
            text: box.label
            textFormat: Text.PlainText
            font: box.prop.fonts.font10_13
            color: Colors.text
        }
    }

    Item {
        id: area

        anchors.fill: parent
        anchors.topMargin: title.height
        anchors.leftMargin: 12 * box.prop.scf
        anchors.rightMargin: 12 * box.prop.scf
        anchors.bottomMargin: 6 * box.prop.scf
    }
}
