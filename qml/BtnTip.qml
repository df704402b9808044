// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// What a button tells about itself while the mouse rests on it; below it, where it covers no caption.
T.ToolTip {
    id: tip

    required property Btn btn

    readonly property real scf: tip.btn.prop.scf

    parent: tip.btn
    x: (tip.btn.width - tip.width) / 2
    y: tip.btn.height + 3 * tip.scf
    margins: 3 * tip.scf
    padding: 4 * tip.scf
    implicitWidth: tip.implicitContentWidth + tip.leftPadding + tip.rightPadding
    implicitHeight: tip.implicitContentHeight + tip.topPadding + tip.bottomPadding
    delay: 600
    text: tip.btn.tooltip
    visible: tip.btn.state === "hovered" && tip.btn.hovered && tip.text !== ""

    contentItem: Text {
        text: tip.text
        textFormat: Text.PlainText
        font: tip.btn.prop.fonts.font9_12
        color: "white"
    }

    background: Rectangle {
        radius: 4 * tip.scf
        color: "#032a53"
        border.color: "#4c63bc"
        border.width: tip.btn.prop.lineWidth
    }
}
