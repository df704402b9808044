// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts
import "OS" as OS

/// The window that gets one archived result; its controller writes the mode.
Item {
    id: root

    property double scf: 1
    property string mode
    property int downloadingPercent: 0
    property string fileName
    property int gradiendVar: 0

    signal loaded
    signal cancelProcess

    onLoaded: gradientTimer.restart()
    onScfChanged: gradientTimer.restart()
    onModeChanged: {
        if (root.mode !== "")
            return;
        root.fileName = "";
        root.downloadingPercent = 0;
    }

    OS.CurrentTheme {
        id: theme

        scf: root.scf
    }

    Properties {
        id: prop

        theme: theme
    }

    Functions {
        id: mainFunctions
    }

    Background {
        id: background
    }

    // The panels can match the background only once they have been laid out.
    Timer {
        id: gradientTimer

        interval: 20
        onTriggered: ++root.gradiendVar
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 15 * root.scf
        visible: root.mode !== ""
        spacing: 0

        FileNameField {
            Layout.fillWidth: true
            prop: prop
            mainFunctions: mainFunctions
            background: background
            recalc: root.gradiendVar
            fileName: root.fileName
        }

        Item {
            Layout.fillHeight: true
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.mode === "downloading"
            prop: prop
            text: qsTr("Downloading file: ") + root.downloadingPercent.toFixed(1) + "%"
            percent: root.downloadingPercent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.mode === "converting"
            prop: prop
            text: qsTr("File Converting")
            percent: 100
            onCancelProcess: root.cancelProcess()
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
