// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// The window that downloads or converts one archived result; its controller sets the mode.
WindowView {
    id: root

    property string mode
    property int downloadingPercent: 0
    property string fileName

    signal cancelProcess

    onModeChanged: {
        if (root.mode !== "")
            return;
        root.fileName = "";
        root.downloadingPercent = 0;
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 15 * root.scf
        visible: root.mode !== ""
        spacing: 0

        FileNameField {
            Layout.fillWidth: true
            view: root
            fileName: root.fileName
        }

        Item {
            Layout.fillHeight: true
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.mode === "downloading"
            prop: root.prop
            text: qsTr("Downloading file: ") + root.downloadingPercent.toFixed(1) + "%"
            percent: root.downloadingPercent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.mode === "converting"
            prop: root.prop
            text: qsTr("File Converting")
            percent: 100
            onCancelProcess: root.cancelProcess()
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
