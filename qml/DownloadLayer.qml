// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Both results being downloaded.
Column {
    id: area

    required property Properties prop
    property string instrument
    property real mainPercent: 0
    property real mixPercent: 0

    signal cancelProcess

    spacing: 12 * area.prop.scf

    DownloadLine {
        width: area.width
        prop: area.prop
        name: area.instrument + " - file.wav"
        percent: area.mainPercent
    }

    DownloadLine {
        width: area.width
        prop: area.prop
        name: qsTr("Mix Without ") + area.instrument + " - file.wav"
        percent: area.mixPercent
    }

    CancelButton {
        anchors.horizontalCenter: parent.horizontalCenter
        prop: area.prop
        onClicked: area.cancelProcess()
    }
}
