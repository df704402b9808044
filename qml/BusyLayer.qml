// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Caption, progress and a cancel button for a running step.
Column {
    id: area

    required property Properties prop
    property string text
    property real percent: 0

    signal cancelProcess

    spacing: 14 * area.prop.scf

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        width: area.width
        text: area.text
        textFormat: Text.PlainText
        font: area.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        lineHeight: 1.15
        horizontalAlignment: Text.AlignHCenter
    }

    ProgressBar {
        anchors.horizontalCenter: parent.horizontalCenter
        prop: area.prop
        percent: area.percent
    }

    CancelButton {
        anchors.horizontalCenter: parent.horizontalCenter
        prop: area.prop
        onClicked: area.cancelProcess()
    }
}
