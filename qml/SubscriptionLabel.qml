// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A label and a value of the subscription; hidden without a value.
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
