// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// One result being downloaded from the service.
Column {
    id: line

    required property Properties prop
    property string name
    property real percent: 0
    readonly property bool done: line.percent === 100

    spacing: 6 * line.prop.scf

    Text {
        width: line.width
        text: line.done ? qsTr("✔ Downloaded ") + line.name : qsTr("Downloading ") + line.name + ": " + line.percent.toFixed(1) + "%"
        textFormat: Text.PlainText
        font: line.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        horizontalAlignment: Text.AlignHCenter
    }

    ProgressBar {
        anchors.horizontalCenter: parent.horizontalCenter
        prop: line.prop
        percent: line.percent
        visible: !line.done
    }
}
