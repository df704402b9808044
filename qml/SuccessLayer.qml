// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The results of a successful run, with buttons to open them.
Item {
    id: area

    required property Properties prop
    property string instrument
    property string player
    property bool isDemo: true

    signal close
    signal openFinalFiles(string type)
    signal proceedAnotherInstrument
    signal proceedAnotherFile

    readonly property real scf: area.prop.scf
    readonly property real noteSpacing: (area.isDemo ? 10 : 20) * area.scf
    readonly property string mainLabel: qsTr("Open ") + area.instrument + qsTr(" In\n") + area.player
    readonly property string mixLabel: qsTr("Open Mix In\n") + area.player
    readonly property string folderLabel: qsTr("Open Containing\nFolder")
    /// One font for all labels, small enough for their longest line.
    readonly property font labelFont: Qt.font({
            "family": area.prop.defaultFont,
            "pointSize": longest.font.pointSize * Math.min(1, 106 * area.scf / longest.implicitWidth)
        })

    implicitHeight: 325 * area.scf

    Text {
        id: longest

        visible: false
        text: area.mainLabel + "\n" + area.mixLabel + "\n" + area.folderLabel
        textFormat: Text.PlainText
        font: area.prop.fonts.font10_13
    }

    Btn {
        prop: area.prop
        iconName: "home"
        iconWidth: 35 * area.scf
        tooltip: qsTr("Home")
        onClicked: area.close()
    }

    Text {
        id: title

        anchors.horizontalCenter: parent.horizontalCenter
        y: 7 * area.scf
        text: qsTr("Process is Successful!")
        textFormat: Text.PlainText
        font.family: area.prop.defaultFont
        font.pointSize: area.prop.fonts.font14_18.pointSize
        font.bold: true
        color: Colors.text
    }

    Text {
        id: note

        anchors.horizontalCenter: parent.horizontalCenter
        y: title.y + title.height + area.noteSpacing
        height: area.isDemo ? implicitHeight : 0
        visible: area.isDemo
        text: qsTr("As a Demo users, TEKO has processed<br>only the first <b><u>30 seconds</u></b>.")
        textFormat: Text.StyledText
        font: area.prop.fonts.font10_13
        color: Colors.text
        horizontalAlignment: Text.AlignHCenter
    }

    Row {
        id: results

        anchors.horizontalCenter: parent.horizontalCenter
        y: note.y + note.height + area.noteSpacing
        spacing: 15 * area.scf

        Btn {
            prop: area.prop
            iconName: "open in"
            iconWidth: 130 * area.scf
            label: area.mainLabel
            labelFont: area.labelFont
            onClicked: area.openFinalFiles("main")
        }

        Btn {
            prop: area.prop
            iconName: "open in"
            iconWidth: 130 * area.scf
            label: area.mixLabel
            labelFont: area.labelFont
            onClicked: area.openFinalFiles("mix")
        }

        Btn {
            prop: area.prop
            iconName: "open in"
            iconWidth: 130 * area.scf
            label: area.folderLabel
            labelFont: area.labelFont
            onClicked: area.openFinalFiles("folder")
        }
    }

    TextBtn {
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 30 * area.scf
        width: 200 * area.scf
        height: 44 * area.scf
        prop: area.prop
        text: qsTr("Isolate Another Instrument")
        onClicked: area.proceedAnotherInstrument()
    }

    TextBtn {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 30 * area.scf
        width: 200 * area.scf
        height: 44 * area.scf
        prop: area.prop
        text: qsTr("Process Another File")
        onClicked: area.proceedAnotherFile()
    }
}
