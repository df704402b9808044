// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The form of the account overlay. Its fields keep what was typed from one mode to the next.
Item {
    id: form

    required property Properties prop
    /// "signIn", "register", "recover" (asks for a code) or "newPassword" (uses it).
    property string mode: "signIn"
    property bool busy: false
    property bool canUseLocalAccount: false
    property alias name: nameField.text
    property alias email: emailField.text
    property alias code: codeField.text
    property alias password: passwordField.text

    readonly property real scf: form.prop.scf

    signal submitted
    signal modeWanted(string mode)
    signal localAccountWanted

    function forgetSecrets() {
        passwordField.text = "";
        codeField.text = "";
    }
    /// Puts the cursor into the first empty field.
    function takeFocus() {
        let chosen = null;
        for (const field of [nameField, emailField, codeField, passwordField]) {
            if (!field.visible)
                continue;
            chosen = field;
            if (field.text === "")
                break;
        }
        if (chosen)
            chosen.takeFocus();
    }
    function submit() {
        if (!form.busy)
            form.submitted();
    }

    onModeChanged: focusTimer.restart()

    // Delayed until the fields of the mode are visible.
    Timer {
        id: focusTimer

        interval: 0
        onTriggered: form.takeFocus()
    }

    Column {
        anchors {
            left: parent.left
            verticalCenter: parent.verticalCenter
        }
        spacing: 3 * form.scf

        AuthField {
            id: nameField

            prop: form.prop
            label: qsTr("Name")
            visible: form.mode === "register"
            readOnly: form.busy
            onAccepted: form.submit()
        }

        AuthField {
            id: emailField

            prop: form.prop
            label: qsTr("E-mail")
            readOnly: form.busy
            onAccepted: form.submit()
        }

        AuthField {
            id: codeField

            prop: form.prop
            label: qsTr("Code")
            visible: form.mode === "newPassword"
            readOnly: form.busy
            onAccepted: form.submit()
        }

        AuthField {
            id: passwordField

            prop: form.prop
            label: form.mode === "newPassword" ? qsTr("New Password") : qsTr("Password")
            secret: true
            visible: form.mode !== "recover"
            readOnly: form.busy
            onAccepted: form.submit()
        }

        Text {
            width: emailField.width
            visible: form.mode === "recover"
            text: form.canUseLocalAccount ? qsTr("A code to set a new password with is written to the service's log on this computer.") : qsTr("A code to set a new password with is sent to this address.")
            textFormat: Text.PlainText
            font: form.prop.fonts.font9_12
            color: Colors.textNote
            wrapMode: Text.Wrap
        }
    }

    Column {
        anchors {
            right: parent.right
            verticalCenter: parent.verticalCenter
        }
        width: 178 * form.scf
        spacing: 8 * form.scf

        Text {
            width: parent.width
            text: ({
                    "register": qsTr("Create an Account"),
                    "recover": qsTr("Forgot Password"),
                    "newPassword": qsTr("New Password")
                })[form.mode] ?? qsTr("Welcome to TEKO")
            textFormat: Text.PlainText
            font: form.prop.fonts.font13_17
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 4
            color: Colors.text
            horizontalAlignment: Text.AlignHCenter
        }

        TextBtn {
            width: parent.width
            height: 36 * form.scf
            prop: form.prop
            enabled: !form.busy
            text: form.busy ? qsTr("Please wait...") : ({
                    "register": qsTr("Register"),
                    "recover": qsTr("Send Code"),
                    "newPassword": qsTr("Set Password")
                })[form.mode] ?? qsTr("Sign In")
            onClicked: form.submit()
        }

        AuthLink {
            prop: form.prop
            text: qsTr("Create an account")
            visible: form.mode === "signIn"
            enabled: !form.busy
            onClicked: form.modeWanted("register")
        }

        AuthLink {
            prop: form.prop
            text: qsTr("Forgot the password?")
            visible: form.mode === "signIn"
            enabled: !form.busy
            onClicked: form.modeWanted("recover")
        }

        AuthLink {
            prop: form.prop
            text: qsTr("Use this computer's account")
            visible: form.mode === "signIn" && form.canUseLocalAccount
            enabled: !form.busy
            onClicked: form.localAccountWanted()
        }

        AuthLink {
            prop: form.prop
            text: qsTr("I have a code already")
            visible: form.mode === "recover"
            enabled: !form.busy
            onClicked: form.modeWanted("newPassword")
        }

        AuthLink {
            prop: form.prop
            text: qsTr("Back to sign in")
            visible: form.mode !== "signIn"
            enabled: !form.busy
            onClicked: form.modeWanted("signIn")
        }
    }
}
