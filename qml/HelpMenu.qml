// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Basic as Controls
import backend.BackendLoader 1.0

/// The help menu of the main window.
Controls.Menu {
    id: menu

    required property Properties prop
    required property BackendLoader backendLoader

    signal loggedOut
    signal scaleReset

    width: 220 * menu.prop.scf
    margins: 0
    padding: 1
    background: Rectangle {
        implicitWidth: 220 * menu.prop.scf
        color: Colors.menu
        border.color: Colors.menuFrame
        border.width: 1
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Help Desk")
        onTriggered: menu.backendLoader.openUrl("/helpdesk.html")
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Logout")
        onTriggered: {
            menu.backendLoader.logout();
            menu.loggedOut();
        }
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Training  Videos")
        onTriggered: menu.backendLoader.openUrl("/teko-server/redirect-training-videos.php")
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("User Guide")
        onTriggered: menu.backendLoader.openUrl("/teko-server/redirect-user-guide.php")
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Check For Programs Updates")
        onTriggered: menu.backendLoader.checkForUpdates()
    }

    MenuItemCustom {
        id: logging
        prop: menu.prop

        text: qsTr("Logging: ") + (logging.checked ? qsTr("ON") : qsTr("OFF"))
        checkable: true
        checked: menu.prop.loggingActive
        onTriggered: {
            menu.prop.loggingActive = logging.checked;
            menu.backendLoader.toggleLogging(logging.checked);
            // Show the stored value: saving may have failed.
            menu.prop.loggingActive = menu.backendLoader.getLoggingStatus();
        }
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Show Logs")
        onTriggered: menu.backendLoader.showLogs()
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Other Dravo Software Products")
        onTriggered: menu.backendLoader.openUrl("/")
    }

    MenuItemCustom {
        prop: menu.prop
        text: qsTr("Reset Gui Resizing")
        isVisible: menu.prop.scf !== 1
        onTriggered: {
            menu.scaleReset();
            menu.backendLoader.resetScf();
        }
    }
}
