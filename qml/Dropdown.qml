// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Fusion as Fusion
import QtQuick.Templates as T
import "helpers.js" as Helpers

/// A combo box over a list of texts. With mainVisible false only its popup is shown, at the same position.
Fusion.ComboBox {
    id: dropdown

    required property Properties prop
    property bool mainVisible: true

    readonly property real scf: dropdown.prop.scf

    implicitWidth: 120 * dropdown.scf
    implicitHeight: 24 * dropdown.scf
    font: dropdown.prop.fonts.font9_12
    padding: 0
    focusPolicy: dropdown.mainVisible ? Qt.StrongFocus : Qt.NoFocus
    Accessible.role: Accessible.ComboBox
    Accessible.ignored: !dropdown.mainVisible

    contentItem: Text {
        leftPadding: 7 * dropdown.scf
        rightPadding: 17 * dropdown.scf
        visible: dropdown.mainVisible
        text: dropdown.displayText
        textFormat: Text.PlainText
        font: dropdown.font
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: dropdown.enabled ? Colors.textOnLight : Colors.textOnLightDisabled
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }

    indicator: Text {
        x: dropdown.width - width - 5 * dropdown.scf
        height: dropdown.height
        visible: dropdown.mainVisible
        text: "▾"
        textFormat: Text.PlainText
        font: dropdown.font
        color: Colors.textOnLight
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        implicitWidth: 120 * dropdown.scf
        implicitHeight: 24 * dropdown.scf
        visible: dropdown.mainVisible
        radius: 3 * dropdown.scf
        border.color: dropdown.visualFocus ? Colors.accent : Colors.fieldFrame
        border.width: dropdown.visualFocus ? Math.max(2, 2 * dropdown.scf) : 1
        gradient: Gradient {
            GradientStop {
                position: 0
                color: dropdown.down ? Colors.boxDownTop : dropdown.hovered ? Colors.boxHoveredTop : Colors.boxTop
            }
            GradientStop {
                position: 1
                color: dropdown.down ? Colors.boxDownBottom : dropdown.hovered ? Colors.boxHoveredBottom : Colors.boxBottom
            }
        }
    }

    delegate: DropdownRow {
    }

    popup: T.Popup {
        width: dropdown.width
        height: Math.min(contentItem.implicitHeight + 2, dropdown.Window.height - topMargin - bottomMargin)
        y: dropdown.mainVisible ? dropdown.height : 0
        margins: 6 * dropdown.scf
        topMargin: 6 * dropdown.scf
        bottomMargin: 6 * dropdown.scf
        padding: 1
        // An invisible box must not react to keys.
        onClosed: {
            if (!dropdown.mainVisible)
                dropdown.focus = false;
        }

        contentItem: DropdownList {
            prop: dropdown.prop
            chosenIndex: dropdown.currentIndex
            currentIndex: dropdown.highlightedIndex
            model: Helpers.rows(dropdown)
        }
        background: Rectangle {
            color: Colors.field
            border.color: Colors.menuFrame
        }
    }
}
