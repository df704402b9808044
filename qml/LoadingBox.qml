// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// What stands on a covered view.
Column {
    id: box

    required property Properties prop

    spacing: 12 * box.prop.scf

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 200 * box.prop.scf
        height: 50 * box.prop.scf
        radius: 10 * box.prop.scf
        color: "#032a53"
        border.color: "#4c63bc"
        border.width: box.prop.lineWidth

        Text {
            anchors.centerIn: parent
            text: qsTr("Loading...")
            textFormat: Text.PlainText
            font: box.prop.fonts.font16_21
            color: "white"
        }
    }

    ProgressBar {
        anchors.horizontalCenter: parent.horizontalCenter
        prop: box.prop
        percent: 100
    }
}
