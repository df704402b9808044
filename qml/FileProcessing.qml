// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml
import QtQuick.Layouts

/// The processing window: layers of which exactly one is visible. Its properties are the state that the controller sets.
WindowView {
    id: root

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
    /// Whether the service is still being checked; the user cannot start anything meanwhile.
    property bool isChecking: false

    readonly property bool busy: Vocabulary.isBusy(root.currentLayer)
    readonly property string instrumentText: root.mainFunctions.capitalizeFirstLetter(root.selectedInstrument)

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
        root.checkRemains();
    }
    onForceProcessAnotherFile: root.openAnotherFile()
    // Emitted for every answer; a binding would miss one that repeats the last number.
    onRemainingProcessingTimeChanged: estimate.takeAnswer(root.remainingProcessingTime)
    onResetProccesing: estimate.resetData()
    // A layer that is set directly cancels a delayed one: a short conversion, or a cancel.
    onCurrentLayerChanged: layerTimer.stop()
    onChangeLayerWithDelay: l => {
        layerTimer.layer = l;
        layerTimer.restart();
    }

    Timer {
        id: layerTimer

        property string layer

        interval: 800
        onTriggered: root.currentLayer = layerTimer.layer
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
            view: root
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
            view: root
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
            view: root
            selectedInstrument: root.selectedInstrument
            selectedOutputFormat: root.selectedOutputFormat
            isVideo: root.isVideo
            onChooseInstrument: root.currentLayer = "instrument_list"
            onChosenFormat: format => root.selectedOutputFormat = format
            onStartProcess: root.startProcess()
        }

        InstrumentLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "instrument_list"
            view: root
            onPicked: instrument => {
                root.selectedInstrument = instrument;
                root.currentLayer = "select_instrument";
            }
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "uploading"
            prop: root.prop
            text: root.uploadingPercent === 100 ? qsTr("Initial settings. Calculating time...") : qsTr("Uploading file: ") + root.uploadingPercent.toFixed(1) + "%"
            percent: root.uploadingPercent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "processing"
            prop: root.prop
            text: qsTr("Processing file: ") + estimate.percent.toFixed(1) + "%\n" + qsTr("Approximate Time Remaining: ") + root.mainFunctions.formatTime(estimate.seconds)
            percent: estimate.percent
            onCancelProcess: root.cancelProcess()
        }

        DownloadLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "downloading"
            prop: root.prop
            instrument: root.instrumentText
            mainPercent: root.downloading1Percent
            mixPercent: root.downloading2Percent
            onCancelProcess: root.cancelProcess()
        }

        BusyLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "converting"
            prop: root.prop
            text: root.convertingText
            percent: 100
            onCancelProcess: root.cancelProcess()
        }

        SuccessLayer {
            Layout.fillWidth: true
            visible: root.currentLayer === "success"
            prop: root.prop
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

    LoadingHover {
        visible: root.isChecking
        prop: root.prop
    }
}
