// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// What an item says about itself while the mouse rests on it; below it, where it covers no caption.
T.ToolTip {
    id: tip

    required property Properties prop

    readonly property real scf: tip.prop.scf

    x: tip.parent ? (tip.parent.width - tip.width) / 2 : 0
    y: tip.parent ? tip.parent.height + 3 * tip.scf : 0
    margins: 3 * tip.scf
    padding: 4 * tip.scf
    implicitWidth: tip.implicitContentWidth + tip.leftPadding + tip.rightPadding
    implicitHeight: tip.implicitContentHeight + tip.topPadding + tip.bottomPadding
    delay: 600

    contentItem: Text {
        text: tip.text
        textFormat: Text.PlainText
        font: tip.prop.fonts.font9_12
        color: Colors.text
        wrapMode: Text.Wrap
    }

    background: Rectangle {
        radius: 4 * tip.scf
        color: Colors.menu
        border.color: Colors.frameBottom
        border.width: tip.prop.lineWidth
    }
}
