// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// One line about the subscription: what it is and its value. Without a value there is no line.
Row {
    id: line

    required property Properties prop
    property string label
    property string value

    visible: line.value !== ""
    spacing: 6 * line.prop.scf
    Accessible.role: Accessible.StaticText
    Accessible.name: line.label + ": " + line.value

    Text {
        id: caption

        text: line.label + ":"
        textFormat: Text.PlainText
        font: line.prop.fonts.font10_13
        color: Colors.textNote
    }

    Text {
        width: line.width - caption.width - line.spacing
        text: line.value
        textFormat: Text.PlainText
        font: line.prop.fonts.font10_13
        color: Colors.text
        elide: Text.ElideRight
    }
}
