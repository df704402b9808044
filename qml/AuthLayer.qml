// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import backend.UserAuth 1.0

/// Covers the main window while signed out: signs in, registers, recovers a password.
Item {
    id: layer

    required property Properties prop
    required property UserAuth userAuth
    property alias mode: form.mode

    readonly property real scf: layer.prop.scf

    function changeMode(mode: string) {
        layer.userAuth.clearError();
        form.mode = mode;
    }
    function submit() {
        switch (form.mode) {
        case "register":
            layer.userAuth.registerAccount(form.name, form.email, form.password);
            break;
        case "recover":
            layer.userAuth.startRecovery(form.email);
            break;
        case "newPassword":
            layer.userAuth.recover(form.email, form.code, form.password);
            break;
        default:
            layer.userAuth.signIn(form.email, form.password);
        }
    }

    function appear() {
        if (form.email === "")
            form.email = layer.userAuth.email;
        form.takeFocus();
    }

    Component.onCompleted: layer.appear()
    onVisibleChanged: {
        if (layer.visible)
            layer.appear();
    }

    Background {
    }

    // Blocks the mouse for the items below.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        Accessible.ignored: true
        onWheel: wheel => wheel.accepted = true
    }

    AuthComponent {
        id: form

        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            bottom: problem.visible ? problem.top : parent.bottom
            leftMargin: 18 * layer.scf
            rightMargin: 18 * layer.scf
        }
        prop: layer.prop
        busy: layer.userAuth.busy
        canUseLocalAccount: layer.userAuth.hasLocalAccount
        onSubmitted: layer.submit()
        onModeWanted: mode => layer.changeMode(mode)
        onLocalAccountWanted: layer.userAuth.signInLocally()
    }

    AuthErrorBox {
        id: problem

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 6 * layer.scf
        }
        height: 40 * layer.scf
        prop: layer.prop
        text: layer.userAuth.errorText
    }

    Connections {
        target: layer.userAuth

        function onRecoveryStarted() {
            form.mode = "newPassword";
        }
        function onSignedIn() {
            form.forgetSecrets();
            form.mode = "signIn";
        }
    }
}
