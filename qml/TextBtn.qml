// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// The pill-shaped text button.
T.AbstractButton {
    id: btn

    required property Properties prop
    property bool isCustomHovered: false
    readonly property bool shownHovered: btn.hovered || btn.isCustomHovered
    /// How far the label gives way to something at its left.
    property real labelShift: 0

    readonly property color backgroundFrom: !btn.enabled ? Colors.buttonDisabledTop : btn.down ? Colors.buttonBottom : btn.shownHovered ? Colors.buttonHoveredTop : Colors.buttonTop
    readonly property color backgroundTo: !btn.enabled ? Colors.buttonDisabledBottom : btn.down ? Colors.buttonTop : Colors.buttonBottom
    readonly property color borderFrom: btn.enabled ? Colors.buttonFrameTop : Colors.buttonFrameDisabled
    readonly property color borderTo: btn.enabled ? Colors.buttonFrameBottom : Colors.buttonFrameDisabled

    font: btn.prop.fonts.font11_15
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: btn.text
    // The second half of a double click is meant for nothing, least of all for what has come under the mouse.
    onDoubleClicked: {
    }
    Keys.onReturnPressed: btn.clicked()
    Keys.onEnterPressed: btn.clicked()
    // Qt leaves the keyboard with an item that is hidden.
    onVisibleChanged: {
        if (!btn.visible)
            btn.focus = false;
    }

    background: Rectangle {
        radius: height / 2
        gradient: Gradient {
            GradientStop {
                position: 0
                color: btn.borderFrom
            }
            GradientStop {
                position: 1
                color: btn.borderTo
            }
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: btn.prop.lineWidth
            radius: btn.height / 2 - btn.prop.scf
            gradient: Gradient {
                GradientStop {
                    position: 0
                    color: btn.backgroundFrom
                }
                GradientStop {
                    position: 1
                    color: btn.backgroundTo
                }
            }
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: -3 * btn.prop.scf
            radius: height / 2
            color: "transparent"
            border.color: Colors.accent
            border.width: Math.max(1, 1.5 * btn.prop.scf)
            visible: btn.visualFocus
        }
    }

    contentItem: Text {
        leftPadding: btn.labelShift
        text: btn.text
        textFormat: Text.PlainText
        font: btn.font
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: Math.max(1, Math.round(7 * btn.prop.scf))
        elide: Text.ElideRight
        color: btn.enabled ? Colors.text : Colors.textDisabled
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    leftPadding: 8 * btn.prop.scf
    rightPadding: 8 * btn.prop.scf
}
