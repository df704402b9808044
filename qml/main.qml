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
    // In a component the bare names would mean the properties that they are bound to.
    readonly property alias prop: prop
    readonly property alias userAuth: userAuth

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
        // Not before it has its size, by which the system finds its place.
        root.visible = true;
    }
    Component.onDestruction: backendLoader.clearMemory()
    // They may come back from where a subscription is sold.
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
        onClicked: helpMenu.popup(root.width - 225 * root.scf, 5 * root.scf)
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
            // A place that was set is where it comes back, and not where the system finds room beside the other window.
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
        // A file that was given at the start has the user's attention by now.
        onWelcomed: if (root.visible)
            backendLoader.showInitialMessage()
    }

    Functions {
        id: mainFunctions
    }

    FileDrop {
        anchors.fill: parent
        prop: prop
        // A cover does not keep drops away, and before the account is known there may be no service yet.
        enabled: prop.isActiveProduct && !initialLoader.visible
        onFileDropped: path => backendLoader.loadFile(path)
    }

    HelpMenu {
        id: helpMenu

        prop: prop
        backendLoader: backendLoader
        onLoggedOut: userAuth.initialCheck()
        onScaleReset: root.scf = 1
    }

    // Made only for those who have to sign in.
    Loader {
        anchors.fill: parent
        active: !prop.isActiveProduct
        // What the overlay needs of this file stands around the component.
        // qmllint disable unqualified
        sourceComponent: AuthLayer {
            prop: root.prop
            userAuth: root.userAuth
        }
        // qmllint enable unqualified
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
