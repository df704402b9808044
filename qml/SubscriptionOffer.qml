// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Explains the limits of the account and offers a subscription.
Item {
    id: offer

    required property Properties prop
    property string title
    property string note
    property string action

    readonly property real scf: offer.prop.scf

    signal accepted

    Text {
        id: heading

        width: parent.width
        text: offer.title
        textFormat: Text.PlainText
        font: offer.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        elide: Text.ElideRight
    }

    Text {
        anchors {
            top: heading.bottom
            topMargin: 8 * offer.scf
            bottom: parent.bottom
            left: parent.left
            right: button.left
            rightMargin: 12 * offer.scf
        }
        text: offer.note
        textFormat: Text.PlainText
        font: offer.prop.fonts.font10_13
        fontSizeMode: Text.Fit
        minimumPointSize: 4
        color: Colors.textNote
        wrapMode: Text.Wrap
    }

    TextBtn {
        id: button

        anchors {
            right: parent.right
            bottom: parent.bottom
        }
        width: 160 * offer.scf
        height: 36 * offer.scf
        prop: offer.prop
        text: offer.action
        onClicked: offer.accepted()
    }
}
