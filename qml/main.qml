// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Basic as Controls
import backend.BackendLoader 1.0
import backend.UserAuth 1.0
import "OS" as OS

/// The home window: a file, the settings, the archive.
Controls.ApplicationWindow {
    id: root

    property real scf: 1

    width: 470 * root.scf
    height: 210 * root.scf
    minimumWidth: 470 * root.scf
    minimumHeight: 210 * root.scf
    maximumWidth: 470 * root.scf
    maximumHeight: 210 * root.scf
    color: Colors.backgroundBottom
    title: mainFunctions.setApplicationWindowTitle()

    Component.onCompleted: {
        backendLoader.onCompleted();
        prop.loggingActive = backendLoader.getLoggingStatus();
        userAuth.initialCheck();
        // Show only after the size is set: the system chooses the position by it.
        root.visible = true;
    }
    Component.onDestruction: backendLoader.clearMemory()
    // The user may come back from buying a subscription in the browser.
    onActiveChanged: if (root.active)
        userAuth.recheck()

    OS.CurrentTheme {
        id: theme

        scf: root.scf
    }

    Properties {
        id: prop

        theme: theme
    }

    Background {
    }

    Btn {
        anchors {
            left: parent.left
            top: parent.top
            margins: 5 * root.scf
        }
        prop: prop
        iconName: "My Account"
        iconWidth: 140 * root.scf
        iconHeight: 28 * root.scf
        tooltip: qsTr("My Account")
        enabled: prop.isActiveProduct
        onClicked: backendLoader.openMyAccountWindow()
    }

    Btn {
        anchors {
            right: parent.right
            top: parent.top
            margins: 5 * root.scf
        }
        prop: prop
        iconName: "Help"
        iconWidth: 30 * root.scf
        tooltip: qsTr("Help")
        enabled: prop.isActiveProduct
        onClicked: {
            helpMenu.load();
            (helpMenu.item as HelpMenu).popup(root.width - 225 * root.scf, 5 * root.scf);
        }
    }

    Row {
        anchors.centerIn: parent
        spacing: 15 * root.scf

        Btn {
            prop: prop
            iconName: "Select File"
            iconWidth: 130 * root.scf
            tooltip: qsTr("Select File")
            enabled: prop.isActiveProduct
            onClicked: backendLoader.selectFile()
        }

        Btn {
            prop: prop
            iconName: "Settings"
            iconWidth: 130 * root.scf
            tooltip: qsTr("Settings")
            enabled: prop.isActiveProduct
            onClicked: backendLoader.openSettingsWindow()
        }

        Btn {
            prop: prop
            iconName: "archive"
            iconWidth: 130 * root.scf
            tooltip: qsTr("Archive")
            enabled: prop.isActiveProduct
            onClicked: backendLoader.openArchive()
        }
    }

    BackendLoader {
        id: backendLoader

        onHideMainWindow: root.visible = false
        onShowMainWindow: {
            // Explicit setX/Y restores the position; otherwise the system would choose a new one.
            root.setX(root.x);
            root.setY(root.y);
            root.visible = true;
            userAuth.recheck();
        }
        onCallSubscriptionCreating: backendLoader.openUrl("/subscription.html")
        onScfChanged: s => root.scf = s
    }

    UserAuth {
        id: userAuth

        onSignedIn: root.setSignedIn(true)
        onSignedOut: root.setSignedIn(false)
        // Skip the greeting if a file window is open.
        onWelcomed: if (root.visible)
            backendLoader.showInitialMessage()
    }

    Functions {
        id: mainFunctions
    }

    FileDrop {
        anchors.fill: parent
        prop: prop
        // An overlay does not block drops, and before the account is known there may be no service yet.
        enabled: prop.isActiveProduct && !initialLoader.visible
        onFileDropped: path => backendLoader.loadFile(path)
    }

    LazyLoader {
        id: helpMenu

        view: "HelpMenu.qml"
        initialProperties: ({
                "prop": prop,
                "backendLoader": backendLoader
            })
    }

    Connections {
        target: helpMenu.item
        function onLoggedOut() {
            userAuth.initialCheck();
        }
        function onScaleReset() {
            root.scf = 1;
        }
    }

    LazyLoader {
        anchors.fill: parent
        view: "AuthLayer.qml"
        initialProperties: ({
                "prop": prop,
                "userAuth": userAuth
            })
        wanted: !prop.isActiveProduct
    }

    LoadingHover {
        id: initialLoader

        prop: prop
    }

    function setSignedIn(signedIn: bool) {
        prop.isActiveProduct = signedIn;
        initialLoader.visible = false;
    }
}
