// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The account window: who is signed in, what their subscription is worth, and the change of both.
WindowView {
    id: root

    property string userName
    property string userEmail
    /// "none", "expired" or "active"
    property string licence: "none"
    property string planType
    property string planVersion
    property string planPeriod
    property string planAdded
    /// -1: not known
    property int filesLeft: -1
    property string errorText
    property bool isEditing: false
    property bool isBusy: false

    signal cancel
    signal save(string name, string email, string password, string oldPassword)
    signal unlockFullAccess

    function showUser() {
        nameField.value = root.userName;
        emailField.value = root.userEmail;
        passwordField.value = "";
        oldPasswordField.value = "";
    }
    function edit() {
        root.errorText = "";
        root.isEditing = true;
        nameField.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }
    function submit() {
        if (root.isEditing && !root.isBusy)
            root.save(nameField.value, emailField.value, passwordField.value, oldPasswordField.value);
    }
    function abort() {
        if (root.isBusy)
            return;
        if (!root.isEditing)
            return root.cancel();
        root.errorText = "";
        root.isEditing = false;
    }

    focus: true
    // The fields are hidden now, which does not take the keyboard from them.
    onIsEditingChanged: {
        root.showUser();
        if (!root.isEditing)
            root.forceActiveFocus();
    }
    // News that arrive while the user types must not take away what was typed.
    onUserNameChanged: root.isEditing || root.showUser()
    onUserEmailChanged: root.isEditing || root.showUser()
    Keys.onReturnPressed: root.submit()
    Keys.onEnterPressed: root.submit()
    Keys.onEscapePressed: root.abort()

    Btn {
        id: home

        anchors {
            left: parent.left
            leftMargin: 15 * root.scf
            verticalCenter: heading.verticalCenter
        }
        prop: root.prop
        iconName: "home"
        iconWidth: 36 * root.scf
        tooltip: qsTr("Back to the main window")
        onClicked: root.cancel()
    }

    SectionLabel {
        id: heading

        anchors {
            top: parent.top
            topMargin: 12 * root.scf
            horizontalCenter: parent.horizontalCenter
        }
        height: 40 * root.scf
        width: 340 * root.scf
        view: root
        text: qsTr("My Account")
    }

    Grid {
        id: fields

        anchors {
            top: heading.bottom
            topMargin: 12 * root.scf
            left: parent.left
            right: parent.right
            leftMargin: 15 * root.scf
            rightMargin: 15 * root.scf
        }
        columns: 2
        columnSpacing: 16 * root.scf
        rowSpacing: 8 * root.scf

        TextField {
            id: nameField

            width: (fields.width - fields.columnSpacing) / 2
            prop: root.prop
            label: qsTr("Name")
            editing: root.isEditing
        }

        TextField {
            id: emailField

            width: nameField.width
            prop: root.prop
            label: qsTr("E-mail")
            editing: root.isEditing
        }

        TextField {
            id: passwordField

            width: nameField.width
            prop: root.prop
            label: root.isEditing ? qsTr("New Password") : qsTr("Password")
            secret: true
            hint: qsTr("Empty: keep the old one")
            editing: root.isEditing
        }

        TextField {
            id: oldPasswordField

            width: nameField.width
            visible: root.isEditing
            prop: root.prop
            label: qsTr("Old Password")
            secret: true
            hint: qsTr("For a new e-mail or password")
            editing: true
        }

        Item {
            width: nameField.width
            height: passwordField.height
            visible: !root.isEditing

            Text {
                anchors.fill: parent
                anchors.topMargin: parent.height - 32 * root.scf
                visible: root.filesLeft >= 0
                text: root.filesLeft === 0 ? qsTr("No files left for today.") : qsTr("Files left for today: %1").arg(root.filesLeft)
                textFormat: Text.PlainText
                font: root.prop.fonts.font10_13
                fontSizeMode: Text.Fit
                minimumPointSize: 4
                color: root.filesLeft === 0 ? Colors.errorText : Colors.textNote
                wrapMode: Text.Wrap
                verticalAlignment: Text.AlignVCenter
            }
        }
    }

    GroupBox {
        id: plan

        anchors {
            top: fields.bottom
            topMargin: 10 * root.scf
            left: fields.left
            right: fields.right
            bottom: problem.top
            bottomMargin: 6 * root.scf
        }
        view: root
        label: qsTr("Subscription")

        MyAccountSubscription {
            anchors.fill: parent
            anchors.topMargin: 6 * root.scf
            visible: root.licence === "active"
            prop: root.prop
            type: root.planType
            version: root.planVersion
            period: root.planPeriod
            added: root.planAdded
        }

        MyAccountNoSubsciption {
            anchors.fill: parent
            anchors.topMargin: 6 * root.scf
            anchors.bottomMargin: 6 * root.scf
            visible: root.licence === "none"
            prop: root.prop
            onAccepted: root.unlockFullAccess()
        }

        MyAccountSubscriptionExpired {
            anchors.fill: parent
            anchors.topMargin: 6 * root.scf
            anchors.bottomMargin: 6 * root.scf
            visible: root.licence === "expired"
            prop: root.prop
            onAccepted: root.unlockFullAccess()
        }
    }

    AuthErrorBox {
        id: problem

        anchors {
            left: fields.left
            right: fields.right
            bottom: buttons.top
            bottomMargin: 8 * root.scf
        }
        height: root.errorText === "" ? 0 : 36 * root.scf
        prop: root.prop
        text: root.errorText
    }

    Row {
        id: buttons

        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: parent.bottom
            bottomMargin: 14 * root.scf
        }
        spacing: 20 * root.scf

        TextBtn {
            width: 160 * root.scf
            height: 40 * root.scf
            prop: root.prop
            enabled: !root.isBusy
            text: root.isBusy ? qsTr("Please wait...") : root.isEditing ? qsTr("Save") : qsTr("Edit")
            onClicked: root.isEditing ? root.submit() : root.edit()
        }

        TextBtn {
            width: 160 * root.scf
            height: 40 * root.scf
            prop: root.prop
            enabled: !root.isBusy
            text: root.isEditing ? qsTr("Cancel") : qsTr("Close")
            onClicked: root.abort()
        }
    }
}
