// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// The chosen instrument and format, shown during a run.
Panel {
    id: label

    property string currentLayer
    property string selectedInstrument
    property string selectedOutputFormat

    implicitWidth: 340 * label.prop.scf
    implicitHeight: 60 * label.prop.scf
    radius: 10 * label.prop.scf
    visible: Vocabulary.isBusy(label.currentLayer)
    Accessible.role: Accessible.StaticText
    Accessible.name: text.text

    Text {
        id: text

        anchors.fill: parent
        text: qsTr("Selected Instrument: ") + label.view.mainFunctions.capitalizeFirstLetter(label.selectedInstrument) + "\n" + qsTr("Output Format: ") + label.selectedOutputFormat.toUpperCase()
        textFormat: Text.PlainText
        font: label.prop.fonts.font11_15
        color: Colors.text
        lineHeight: 1.15
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
