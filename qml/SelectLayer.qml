// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// The choice of the instrument and of the output format.
Column {
    id: area

    required property WindowView view
    readonly property Properties prop: area.view.prop
    property string selectedInstrument: Vocabulary.none
    property string selectedOutputFormat: Vocabulary.none
    property bool isVideo: true

    signal chooseInstrument
    signal chosenFormat(string format)
    signal startProcess

    readonly property bool hasInstrument: area.selectedInstrument !== Vocabulary.none
    readonly property bool hasFormat: area.selectedOutputFormat !== Vocabulary.none

    function openFormats() {
        formats.currentIndex = formats.model.indexOf(area.selectedOutputFormat.toUpperCase());
        // The box handles arrow keys, Return and Escape for its open list.
        formats.forceActiveFocus();
        formats.popup.open();
    }

    spacing: 14 * area.prop.scf

    Text {
        width: area.width
        text: qsTr("Select the instrument you’d like to have removed")
        textFormat: Text.PlainText
        font: area.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        horizontalAlignment: Text.AlignHCenter
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 30 * area.prop.scf

        Btn {
            prop: area.prop
            iconName: area.hasInstrument ? area.selectedInstrument : "Select Instrument"
            iconWidth: 130 * area.prop.scf
            tooltip: area.hasInstrument ? qsTr("Instrument: ") + area.view.mainFunctions.capitalizeFirstLetter(area.selectedInstrument) : qsTr("Select Instrument")
            onClicked: area.chooseInstrument()
        }

        Item {
            width: 130 * area.prop.scf
            height: 130 * area.prop.scf

            Btn {
                visible: !area.hasFormat
                prop: area.prop
                iconName: "Output Format"
                iconWidth: parent.width
                tooltip: qsTr("Output Format")
                onClicked: area.openFormats()
            }

            Btn {
                visible: area.hasFormat
                prop: area.prop
                iconName: "open in"
                iconWidth: parent.width
                additionalIcon: "/icons/" + (Vocabulary.isAudio(area.selectedOutputFormat) ? "audio" : "video") + ".svg"
                label: area.selectedOutputFormat
                tooltip: qsTr("Output Format: ") + area.selectedOutputFormat
                onClicked: area.openFormats()
            }

            Dropdown {
                id: formats

                anchors.horizontalCenter: parent.horizontalCenter
                prop: area.prop
                mainVisible: false
                model: area.isVideo ? Vocabulary.allFormats : Vocabulary.audioFormats
                onActivated: index => area.chosenFormat(index < 0 ? Vocabulary.none : formats.textAt(index))
            }
        }
    }

    TextBtn {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 150 * area.prop.scf
        height: 44 * area.prop.scf
        prop: area.prop
        text: qsTr("PROCESS")
        enabled: area.hasInstrument && area.hasFormat
        onClicked: area.startProcess()
    }
}
