// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// Text that answers a click, like a link.
T.AbstractButton {
    id: link

    required property Properties prop

    implicitWidth: link.implicitContentWidth
    implicitHeight: link.implicitContentHeight
    font: link.prop.fonts.font9_12
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.Link
    Accessible.name: link.text
    // The second half of a double click is meant for nothing, least of all for what has come under the mouse.
    onDoubleClicked: {
    }
    Keys.onReturnPressed: link.clicked()
    Keys.onEnterPressed: link.clicked()
    // Qt leaves the keyboard with an item that is hidden.
    onVisibleChanged: {
        if (!link.visible)
            link.focus = false;
    }

    contentItem: Text {
        text: link.text
        textFormat: Text.PlainText
        font.family: link.font.family
        font.pointSize: link.font.pointSize
        font.underline: link.hovered || link.visualFocus
        color: Colors.text
        verticalAlignment: Text.AlignVCenter
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
