// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A labelled line of text in the account overlay. A secret one can be made readable.
Item {
    id: field

    required property Properties prop
    property string label
    property bool secret: false
    property bool readOnly: false
    property bool isRevealed: false
    property alias text: input.text

    readonly property real scf: field.prop.scf

    signal accepted

    function takeFocus() {
        input.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: 236 * field.scf
    implicitHeight: 45 * field.scf
    // Qt leaves the keyboard with an item that is hidden.
    onVisibleChanged: {
        field.isRevealed = false;
        if (!field.visible)
            input.focus = false;
    }

    Text {
        id: caption

        width: parent.width
        height: 15 * field.scf
        text: field.label
        textFormat: Text.PlainText
        font: field.prop.fonts.font9_12
        fontSizeMode: Text.Fit
        minimumPointSize: 4
        color: Colors.text
        verticalAlignment: Text.AlignVCenter
    }

    Rectangle {
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        height: 28 * field.scf
        radius: 6 * field.scf
        color: field.readOnly ? Colors.fieldReadOnly : Colors.field
        border.color: input.activeFocus ? Colors.accent : Colors.frameBottom
        border.width: Math.max(1, (input.activeFocus ? 2 : 1) * field.scf)

        TextInput {
            id: input

            anchors {
                fill: parent
                leftMargin: 9 * field.scf
                rightMargin: (field.secret ? 32 : 9) * field.scf
            }
            activeFocusOnTab: true
            readOnly: field.readOnly
            echoMode: field.secret && !field.isRevealed ? TextInput.Password : TextInput.Normal
            inputMethodHints: field.secret ? Qt.ImhSensitiveData | Qt.ImhNoPredictiveText : Qt.ImhNone
            // What the service takes of an address and of a password.
            maximumLength: field.secret ? 1024 : 254
            font: field.prop.fonts.font10_13
            color: Colors.textOnLight
            selectionColor: Colors.accent
            clip: true
            selectByMouse: true
            verticalAlignment: Text.AlignVCenter
            Accessible.role: Accessible.EditableText
            Accessible.name: field.label
            // Qt hides the name of a password, but not its description.
            Accessible.description: field.label
            Accessible.passwordEdit: input.echoMode === TextInput.Password
            onAccepted: field.accepted()
        }

        Btn {
            anchors {
                right: parent.right
                rightMargin: 6 * field.scf
                verticalCenter: parent.verticalCenter
            }
            prop: field.prop
            visible: field.secret
            iconName: field.isRevealed ? "password-visible" : "password-hidden"
            iconWidth: 20 * field.scf
            tooltip: field.isRevealed ? qsTr("Hide the password") : qsTr("Show the password")
            onClicked: field.isRevealed = !field.isRevealed
        }
    }
}
