// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Covers a view and swallows its clicks while the view waits for something.
Rectangle {
    id: hover

    required property Properties prop

    anchors.fill: parent
    color: "#cc000000"
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        Accessible.ignored: true
        onClicked: console.info("Block click")
        onWheel: wheel => wheel.accepted = true
    }

    Column {
        anchors.centerIn: parent
        spacing: 12 * hover.prop.scf

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 200 * hover.prop.scf
            height: 50 * hover.prop.scf
            radius: 10 * hover.prop.scf
            color: "#032a53"
            border.color: "#4c63bc"
            border.width: hover.prop.lineWidth

            Text {
                id: label

                anchors.centerIn: parent
                text: qsTr("Loading...")
                textFormat: Text.PlainText
                font: hover.prop.fonts.font16_21
                color: "white"
            }
        }

        ProgressBar {
            anchors.horizontalCenter: parent.horizontalCenter
            prop: hover.prop
            percent: 100
        }
    }
}
