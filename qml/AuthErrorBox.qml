// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The error of an account request; invisible while empty.
Rectangle {
    id: box

    required property Properties prop
    property string text

    visible: box.text !== ""
    radius: 6 * box.prop.scf
    color: Colors.error
    border.color: Colors.errorFrame
    border.width: Math.max(1, box.prop.scf)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: box.text

    Text {
        id: message

        anchors {
            fill: parent
            leftMargin: 10 * box.prop.scf
            rightMargin: 10 * box.prop.scf
            topMargin: 3 * box.prop.scf
            bottomMargin: 3 * box.prop.scf
        }
        text: box.text
        textFormat: Text.PlainText
        font: box.prop.fonts.font9_12
        fontSizeMode: Text.Fit
        minimumPointSize: Math.max(1, Math.round(7 * box.prop.scf))
        color: Colors.text
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    HoverHandler {
        id: hover
    }

    Tip {
        prop: box.prop
        text: box.text
        visible: hover.hovered && message.truncated
    }
}
