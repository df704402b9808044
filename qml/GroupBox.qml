// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A titled panel. Its content lies over it, in the middle.
Item {
    id: box

    required property Properties prop
    required property Functions mainFunctions
    required property Background background
    required property int recalc
    property string label
    default property alias content: area.data

    implicitHeight: 70 * box.prop.scf
    Accessible.role: Accessible.Grouping
    Accessible.name: box.label

    Panel {
        anchors.fill: parent
        anchors.topMargin: title.height / 2
        prop: box.prop
        mainFunctions: box.mainFunctions
        background: box.background
        recalc: box.recalc
        frameTo: "#4960ba"
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
                color: box.mainFunctions.interpolateColor(box.background, title, 0, box.recalc)
            }
            GradientStop {
                position: 1
                color: box.mainFunctions.interpolateColor(box.background, title, title.height, box.recalc)
            }
        }

        Text {
            id: caption

            anchors.centerIn: parent
            text: box.label
            textFormat: Text.PlainText
            font: box.prop.fonts.font10_13
            color: "white"
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
