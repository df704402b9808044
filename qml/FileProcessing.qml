// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts
import "OS" as OS

/// The processing window: layers of which exactly one is visible. Its properties are the state that the controller writes.
Item {
    id: root

    property double scf: 1
    property double uploadingPercent: 0
    property int downloading1Percent: 0
    property int downloading2Percent: 0
    property int remainingProcessingTime: 0
    property string fileName: "Some file name"
    property string currentLayer: "select_instrument"
    property string selectedInstrument: "none"
    property string selectedOutputFormat: "none"
    property string convertingText: "Converting to selected format"
    property string playerForVideo: "Default Video Player"
    property string playerForAudio: "Default Audio Player"
    property bool isVideo: true
    property bool isDemo: true
    property int gradiendVar: 0

    readonly property bool busy: Vocabulary.isBusy(root.currentLayer)
    readonly property string instrumentText: mainFunctions.capitalizeFirstLetter(root.selectedInstrument)

    signal loaded
    signal close
    signal checkRemains
    signal forceProcessAnotherFile
    signal openAnotherFile
    signal startProcess
    signal getRemainsSeconds
    signal openFinalFiles(string type)
    signal proceedAnotherFile
    signal proceedAnotherInstrument
    signal resetProccesing
    signal changeLayerWithDelay(string l)
    signal cancelProcess

    onLoaded: {
        gradientTimer.restart();
        root.checkRemains();
    }
    onScfChanged: gradientTimer.restart()
    onForceProcessAnotherFile: root.openAnotherFile()
    // Announced for every answer. A binding would not hear one that repeats the last number.
    onRemainingProcessingTimeChanged: estimate.takeAnswer(root.remainingProcessingTime)
    onResetProccesing: estimate.resetData()
    // A layer that is set at once overtakes one that is still delayed: a short conversion, or a cancel.
    onCurrentLayerChanged: layerTimer.stop()
    onChangeLayerWithDelay: l => {
        layerTimer.layer = l;
        layerTimer.restart();
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

    Timer {
        id: layerTimer

        property string layer

        interval: 800
        onTriggered: root.currentLayer = layerTimer.layer
    }

    Timer {
        id: doubleClick

        interval: Application.styleHints.mouseDoubleClickInterval
    }

    // The panels can match the background only once they have been laid out.
    Timer {
        id: gradientTimer

        interval: 20
        onTriggered: ++root.gradiendVar
    }

    ProgressEstimate {
        id: estimate

        active: root.currentLayer === "processing"
        onGetRemainsSeconds: root.getRemainsSeconds()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 15 * root.scf
        spacing: 0

        Item {
            Layout.preferredHeight: 10 * root.scf
        }

        ProcessingHeader {
            Layout.fillWidth: true
            visible: root.busy || root.currentLayer === "select_instrument"
            prop: prop
            mainFunctions: mainFunctions
            background: background
            recalc: root.gradiendVar
            fileName: root.fileName
            active: root.currentLayer === "select_instrument"
            onClose: root.close()
            onOpenAnotherFile: root.openAnotherFile()
        }

        Item {
            Layout.preferredHeight: 10 * root.scf
            visible: root.busy
        }

        SelectedItemsLabel {
            Layout.alignment: Qt.AlignHCenter
            prop: prop
            mainFunctions: mainFunctions
            background: background
            recalc: root.gradiendVar
            currentLayer: root.currentLayer
            selectedInstrument: root.selectedInstrument
            selectedOutputFormat: root.selectedOutputFormat
        }

        Item {
            Layout.fillHeight: true
        }

        SelectLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "select_instrument"
            prop: prop
            mainFunctions: mainFunctions
            selectedInstrument: root.selectedInstrument
            selectedOutputFormat: root.selectedOutputFormat
            isVideo: root.isVideo
            onChooseInstrument: {
                root.currentLayer = "instrument_list";
                doubleClick.restart();
            }
            onChosenFormat: format => root.selectedOutputFormat = format
            onStartProcess: root.startProcess()
        }

        InstrumentLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "instrument_list"
            prop: prop
            mainFunctions: mainFunctions
            onPicked: instrument => {
                root.selectedInstrument = instrument;
                root.currentLayer = "select_instrument";
                doubleClick.restart();
            }
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "uploading"
            prop: prop
            text: root.uploadingPercent === 100 ? qsTr("Initial settings. Calculating time...") : qsTr("Uploading file: ") + root.uploadingPercent.toFixed(1) + "%"
            percent: root.uploadingPercent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "processing"
            prop: prop
            text: qsTr("Processing file: ") + estimate.percent.toFixed(1) + "%\n" + qsTr("Approximate Time Remaining: ") + mainFunctions.formatTime(estimate.seconds)
            percent: estimate.percent
            onCancelProcess: root.cancelProcess()
        }

        DownloadLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "downloading"
            prop: prop
            instrument: root.instrumentText
            mainPercent: root.downloading1Percent
            mixPercent: root.downloading2Percent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "converting"
            prop: prop
            text: root.convertingText
            percent: 100
            onCancelProcess: root.cancelProcess()
        }

        SuccessLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "success"
            prop: prop
            instrument: root.instrumentText
            player: Vocabulary.isAudio(root.selectedOutputFormat) ? root.playerForAudio : root.playerForVideo
            isDemo: root.isDemo
            onClose: root.close()
            onOpenFinalFiles: type => root.openFinalFiles(type)
            onProceedAnotherInstrument: root.proceedAnotherInstrument()
            onProceedAnotherFile: root.proceedAnotherFile()
        }

        Item {
            Layout.fillHeight: true
        }
    }

    // The second half of a double click is not meant for the picture that has just come under the mouse.
    MouseArea {
        anchors.fill: parent
        visible: doubleClick.running
        Accessible.ignored: true
    }
}
