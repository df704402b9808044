// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A labelled value that can be edited while its window says so.
Item {
    id: field

    required property Properties prop
    property string label
    property string value
    property bool editing: false
    property bool secret: false
    property string hint // shown in an empty field while it can be edited

    implicitWidth: 300 * field.prop.scf
    implicitHeight: caption.height + 4 * field.prop.scf + 32 * field.prop.scf

    Text {
        id: caption

        text: field.label + ":"
        textFormat: Text.PlainText
        font: field.prop.fonts.font10_13
        color: Colors.text
    }

    Rectangle {
        id: box

        anchors.bottom: parent.bottom
        width: parent.width
        height: 32 * field.prop.scf
        radius: 6 * field.prop.scf
        border.color: input.activeFocus ? Colors.accent : Colors.frameBottom
        border.width: field.prop.lineWidth
        gradient: Gradient {
            GradientStop {
                position: 0
                color: field.editing ? Colors.field : Colors.fieldShadedTop
            }
            GradientStop {
                position: 1
                color: field.editing ? Colors.field : Colors.fieldShadedBottom
            }
        }

        TextInput {
            id: input

            anchors.fill: parent
            anchors.leftMargin: 10 * field.prop.scf
            anchors.rightMargin: 10 * field.prop.scf
            visible: field.editing
            activeFocusOnTab: true
            text: field.value
            echoMode: field.secret ? TextInput.Password : TextInput.Normal
            font: field.prop.fonts.font10_13
            color: Colors.textOnLight
            clip: true
            selectByMouse: true
            verticalAlignment: Text.AlignVCenter
            Accessible.role: Accessible.EditableText
            Accessible.name: field.label
            // Qt hides the name of a password, but not its description.
            Accessible.description: field.label
            Accessible.passwordEdit: field.secret
            onTextEdited: field.value = input.text
        }

        Text {
            anchors.fill: input
            visible: !field.editing || input.text === ""
            text: field.editing ? field.hint : field.secret ? "******" : field.value
            textFormat: Text.PlainText
            font: field.prop.fonts.font10_13
            color: field.editing ? Colors.textOnLightDisabled : Colors.text
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
    }
}
