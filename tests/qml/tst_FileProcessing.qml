// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property var view

    function show(set: var, scale: real) {
        const parent = test.showIn(470 * scale, 350 * scale);
        test.view = test.make("FileProcessing", parent, Object.assign({
                    "width": parent.width,
                    "height": parent.height,
                    "scf": scale
                }, States.chosen));
        for (const [key, value] of Object.entries(set))
            test.view[key] = value;
        test.view.loaded();
        tryVerify(() => test.view.gradiendVar > 0);
    }
    function spyOn(signal: string): var {
        return createTemporaryObject(spies, test, {
                "target": test.view,
                "signalName": signal
            });
    }
    function test_states_data(): var {
        return States.rows(States.processing);
    }
    function test_states(data: var) {
        test.show(data.state.set, data.scale);
        if (data.state.click !== undefined)
            test.click(test.view, data.state.click);
        test.checkNames(test.window.contentItem);
        test.checkFit(test.window.contentItem);
    }
    function test_defaults() {
        test.view = test.make("FileProcessing", test);
        const expected = {
            "scf": 1,
            "uploadingPercent": 0,
            "downloading1Percent": 0,
            "downloading2Percent": 0,
            "remainingProcessingTime": 0,
            "fileName": "Some file name",
            "currentLayer": "select_instrument",
            "selectedInstrument": "none",
            "selectedOutputFormat": "none",
            "convertingText": "Converting to selected format",
            "playerForVideo": "Default Video Player",
            "playerForAudio": "Default Audio Player",
            "isVideo": true,
            "isDemo": true,
            "gradiendVar": 0
        };
        for (const [key, value] of Object.entries(expected))
            compare(test.view[key], value, key);
    }
    function test_layers_data(): var {
        return [{
                "tag": "select_instrument",
                "texts": ["Select the instrument you’d like to have removed", "PROCESS", "File Name: Evening Song.mp4"]
            }, {
                "tag": "instrument_list",
                "texts": []
            }, {
                "tag": "uploading",
                "texts": ["Uploading file: 99.9%", "CANCEL", "Selected Instrument: Vocals\nOutput Format: MP4"]
            }, {
                "tag": "processing",
                "texts": ["Processing file: 0.0%\nApproximate Time Remaining: 1:35", "CANCEL"]
            }, {
                "tag": "downloading",
                "texts": ["✔ Downloaded Vocals - file.wav", "Downloading Mix Without Vocals - file.wav: 7.0%", "CANCEL"]
            }, {
                "tag": "converting",
                "texts": ["Converting to selected format", "CANCEL"]
            }, {
                "tag": "success",
                "texts": ["Process is Successful!", "Open Vocals In\nDefault Video Player", "Open Mix In\nDefault Video Player", "Open Containing\nFolder", "As a Demo users, TEKO has processed<br>only the first <b><u>30 seconds</u></b>."]
            }];
    }
    function test_layers(data: var) {
        test.show({
                "currentLayer": data.tag,
                "uploadingPercent": 99.9,
                "remainingProcessingTime": 95,
                "downloading1Percent": 100,
                "downloading2Percent": 7
            }, 1);
        const own = ["PROCESS", "Guitar", "CANCEL", "Process Another File"].filter(name => test.find(test.view, name));
        compare(own.length, 1);
        for (const text of data.texts)
            verify(test.shows(test.view, text), text + " in " + test.texts(test.view).map(t => t.text));
        const header = ["select_instrument", "uploading", "processing", "downloading", "converting"].includes(data.tag);
        compare(test.shows(test.view, "File Name: Evening Song.mp4"), header);
        if (header)
            compare(test.find(test.view, "Home").enabled, data.tag === "select_instrument");
        compare(test.items(test.view).filter(i => i.moving).length, {
                "uploading": 1,
                "downloading": 1,
                "converting": 1
            }[data.tag] ?? 0);
    }
    function test_signals_data(): var {
        return [["select_instrument", "Home", "close"], ["select_instrument", "Select Another File", "openAnotherFile"], ["select_instrument", "PROCESS", "startProcess"], ["uploading", "CANCEL", "cancelProcess"], ["processing", "CANCEL", "cancelProcess"], ["downloading", "CANCEL", "cancelProcess"], ["converting", "CANCEL", "cancelProcess"], ["success", "Home", "close"], ["success", "Open Vocals In Default Video Player", "openFinalFiles", "main"], ["success", "Open Mix In Default Video Player", "openFinalFiles", "mix"], ["success", "Open Containing Folder", "openFinalFiles", "folder"], ["success", "Isolate Another Instrument", "proceedAnotherInstrument"], ["success", "Process Another File", "proceedAnotherFile"]].map(r => ({
                        "tag": r[0] + " " + r[1],
                        "layer": r[0],
                        "button": r[1],
                        "signal": r[2],
                        "argument": r[3]
                    }));
    }
    function test_signals(data: var) {
        test.show({
                "currentLayer": data.layer
            }, 1);
        const spy = test.spyOn(data.signal);
        test.click(test.view, data.button);
        compare(spy.count, 1);
        compare(spy.signalArguments[0][0], data.argument);
    }
    function test_relays() {
        test.show({}, 1);
        const remains = test.spyOn("checkRemains");
        const another = test.spyOn("openAnotherFile");
        test.view.loaded();
        test.view.forceProcessAnotherFile();
        compare([remains.count, another.count], [1, 1]);
    }
    function test_choices() {
        test.show({
                "selectedInstrument": "none",
                "selectedOutputFormat": "none"
            }, 1);
        verify(!test.find(test.view, "PROCESS").enabled);
        test.click(test.view, "Select Instrument");
        compare(test.view.currentLayer, "instrument_list");
        test.click(test.view, "Drums");
        compare([test.view.selectedInstrument, test.view.currentLayer], ["drums", "select_instrument"]);
        verify(!test.find(test.view, "PROCESS").enabled);
        test.click(test.view, "Output Format");
        test.click(test.window.contentItem, "WMV");
        compare(test.view.selectedOutputFormat, "WMV");
        verify(test.find(test.view, "PROCESS").enabled);
    }
    function test_formats_data(): var {
        const audio = ["MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"];
        return [{
                "tag": "video",
                "isVideo": true,
                "selected": "MKV",
                "rows": ["MP4", "MKV", "MOV", "WMV", "MPG", "WEBM"].concat(audio),
                "index": 1
            }, {
                "tag": "audio",
                "isVideo": false,
                "selected": "WMA",
                "rows": audio,
                "index": 5
            }, {
                "tag": "not in the list",
                "isVideo": false,
                "selected": "MKV",
                "rows": audio,
                "index": -1
            }];
    }
    function test_formats(data: var) {
        test.show({
                "isVideo": data.isVideo,
                "selectedOutputFormat": data.selected
            }, 0.6);
        test.click(test.view, "Output Format: " + data.selected);
        const rows = test.items(test.window.contentItem).filter(i => i.Accessible.role === Accessible.ListItem);
        compare(rows.map(r => r.modelData), data.rows);
        compare(rows[0].list.chosenIndex, data.index);
    }
    /// The controller announces each answer, one that changes nothing as well.
    function test_repeatedAnswer() {
        test.show({
                "currentLayer": "processing",
                "remainingProcessingTime": 50
            }, 1);
        const estimate = test.items(test.view).find(i => i.takeAnswer !== undefined);
        estimate.tickSecond();
        compare(estimate.seconds, 49);
        test.view.remainingProcessingTimeChanged();
        compare(estimate.seconds, 50);
    }
    function test_layerWithDelay() {
        test.show({}, 1);
        const changes = test.spyOn("currentLayerChanged");
        const start = Date.now();
        test.view.changeLayerWithDelay("converting");
        test.view.changeLayerWithDelay("success");
        tryCompare(test.view, "currentLayer", "success");
        compare(changes.count, 1);
        verify(Date.now() - start >= 790);
    }
    function test_keyboard() {
        test.show({
                "currentLayer": "success"
            }, 1);
        const spy = test.spyOn("proceedAnotherFile");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Return);
        compare(spy.count, 1);
    }
    Component {
        id: spies

        SignalSpy {
        }
    }

    name: "FileProcessing"
}
