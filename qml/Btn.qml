// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T
import qml

/// An image button for the mouse only: it never takes the keyboard focus.
T.AbstractButton {
    id: btn

    required property Properties prop
    property string iconName
    property real iconWidth: 10
    property real iconHeight: btn.iconWidth
    property string tooltip
    property bool isCustomHovered: false
    /// A second picture over the first one, such as "/icons/audio.svg".
    property string additionalIcon
    property string label
    property font labelFont: btn.prop.fonts.font10_13

    implicitWidth: btn.iconWidth
    implicitHeight: btn.iconHeight
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: btn.tooltip !== "" ? btn.tooltip : btn.label !== "" ? btn.label.replace("\n", " ") : btn.iconName
    // Ignore the second click of a double click: another item may be under the mouse by then.
    onDoubleClicked: {
    }

    states: [
        State {
            name: "disabled"
            when: !btn.enabled
        },
        State {
            name: "pressed"
            when: btn.pressed
        },
        State {
            name: "hovered"
            when: btn.hovered || btn.isCustomHovered
        }
    ]

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            width: btn.iconWidth
            height: btn.iconHeight
            name: btn.iconName
            state: btn.state
        }

        Image {
            // In the free corner of the picture "open in".
            x: parent.width * 0.31
            y: parent.height * 0.29
            width: parent.width * 0.26
            height: width
            sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
            sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
            source: btn.additionalIcon === "" ? "" : PictureFiles.existing(Qt.resolvedUrl(btn.additionalIcon))
            visible: btn.additionalIcon !== ""
        }

        Text {
            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.bottom
                margins: 6 * btn.prop.scf
                bottomMargin: 12 * btn.prop.scf
            }
            height: 36 * btn.prop.scf
            visible: btn.label !== ""
            text: btn.label
            textFormat: Text.PlainText
            font: btn.labelFont
            fontSizeMode: Text.Fit
            minimumPointSize: 4
            color: btn.enabled ? Colors.text : Colors.textDisabled
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
    }

    Tip {
        prop: btn.prop
        text: btn.tooltip
        visible: btn.hovered && btn.enabled && !btn.pressed && btn.tooltip !== ""
    }
}
