// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The name of the file that the window works on.
Panel {
    id: field

    property string fileName

    implicitHeight: 32 * field.prop.scf
    radius: 8 * field.prop.scf
    Accessible.role: Accessible.StaticText
    Accessible.name: text.text

    Text {
        id: text

        anchors.fill: parent
        anchors.leftMargin: 10 * field.prop.scf
        anchors.rightMargin: 10 * field.prop.scf
        text: qsTr("File Name: ") + field.fileName
        textFormat: Text.PlainText
        font: field.prop.fonts.font10_13
        color: Colors.text
        elide: Text.ElideMiddle
        maximumLineCount: 1
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
