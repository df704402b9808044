// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The heading of a window.
Panel {
    id: heading

    property string text

    implicitWidth: 352 * heading.prop.scf
    implicitHeight: 47 * heading.prop.scf
    radius: 10 * heading.prop.scf

    Text {
        anchors.fill: parent
        anchors.margins: 8 * heading.prop.scf
        text: heading.text
        textFormat: Text.PlainText
        font: heading.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
