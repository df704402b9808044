// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Basic as Controls
import QtQuick.Layouts

/// An entry of a menu.
Controls.MenuItem {
    id: entry

    required property Properties prop
    property bool isVisible: true
    property font titleStyle: entry.prop.fonts.font9_12
    property int elideText: Text.ElideRight
    property string shortCut

    readonly property real scf: entry.prop.scf
    readonly property color textColor: entry.enabled ? Colors.text : Colors.textDisabled

    height: entry.isVisible ? 22 * entry.scf : 0
    implicitHeight: entry.height
    visible: entry.isVisible
    enabled: entry.isVisible
    padding: 0
    Accessible.role: Accessible.MenuItem
    Accessible.name: entry.text

    onTriggered: {
        if (entry.menu)
            entry.menu.close();
    }

    contentItem: RowLayout {
        spacing: 6 * entry.scf

        Text {
            Layout.fillWidth: true
            Layout.leftMargin: 26 * entry.scf
            text: entry.text
            textFormat: Text.PlainText
            font: entry.titleStyle
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 4
            color: entry.textColor
            elide: entry.elideText
        }

        Text {
            Layout.rightMargin: 10 * entry.scf
            text: entry.shortCut
            textFormat: Text.PlainText
            font: entry.titleStyle
            color: entry.textColor
        }
    }

    indicator: Text {
        x: 8 * entry.scf
        height: entry.height
        visible: entry.checkable && entry.checked
        text: "✓"
        textFormat: Text.PlainText
        font: entry.titleStyle
        color: entry.textColor
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        color: entry.highlighted || entry.down ? Colors.menuHighlight : "transparent"
    }
}
