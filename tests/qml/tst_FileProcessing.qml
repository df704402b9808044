// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property var view

    function show(set: var, scale: real) {
        test.view = test.showView("FileProcessing", [470, 350], scale, Object.assign({}, States.chosen, set));
    }
    function clickUntil(name: string, isDone: var) {
        tryVerify(() => {
                if (!isDone())
                    test.click(test.view, name);
                return isDone();
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
        const labels = test.texts(test.view).filter(text => text.text.startsWith("Open "));
        verify(labels.every(label => label.fontInfo.pixelSize === labels[0].fontInfo.pixelSize));
    }
    function test_layers_data(): var {
        const table = States.table("texts");
        table.add("select_instrument", ["Select the instrument you’d like to have removed", "PROCESS", "File Name: Evening Song.mp4"]);
        table.add("instrument_list", []);
        table.add("uploading", ["Uploading file: 99.9%", "CANCEL", "Selected Instrument: Vocals\nOutput Format: MP4"]);
        table.add("processing", ["Processing file: 0.0%\nApproximate Time Remaining: 1:35", "CANCEL"]);
        table.add("downloading", ["✔ Downloaded Vocals - file.wav", "Downloading Mix Without Vocals - file.wav: 7.0%", "CANCEL"]);
        table.add("converting", ["Converting to selected format", "CANCEL"]);
        table.add("success", ["Process is Successful!", "Open Vocals In\nDefault Video Player", "Open Mix In\nDefault Video Player", "Open Containing\nFolder", "As a Demo users, TEKO has processed<br>only the first <b><u>30 seconds</u></b>."]);
        return table.rows;
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
        const table = States.table("layer", "button", "said");
        table.add("home", "select_instrument", "Home", ["close"]);
        table.add("another source", "select_instrument", "Select Another File", ["openAnotherFile"]);
        table.add("start", "select_instrument", "PROCESS", ["startProcess"]);
        for (const layer of ["uploading", "processing", "downloading", "converting"])
            table.add(layer, layer, "CANCEL", ["cancelProcess"]);
        table.add("home at the end", "success", "Home", ["close"]);
        table.add("instrument", "success", "Open Vocals In Default Video Player", ["openFinalFiles", "main"]);
        table.add("mix", "success", "Open Mix In Default Video Player", ["openFinalFiles", "mix"]);
        table.add("folder", "success", "Open Containing Folder", ["openFinalFiles", "folder"]);
        table.add("another instrument", "success", "Isolate Another Instrument", ["proceedAnotherInstrument"]);
        table.add("another file", "success", "Process Another File", ["proceedAnotherFile"]);
        return table.rows;
    }
    function test_signals(data: var) {
        test.show({
                "currentLayer": data.layer
            }, 1);
        test.heed(test.view, [data.said[0]]);
        test.click(test.view, data.button);
        compare(test.said, [data.said]);
    }
    function test_relays() {
        test.show({}, 1);
        test.heed(test.view, ["checkRemains", "openAnotherFile"]);
        test.view.loaded();
        test.view.forceProcessAnotherFile();
        compare(test.said, [["checkRemains"], ["openAnotherFile"]]);
    }
    function test_choices() {
        test.show({
                "selectedInstrument": "none",
                "selectedOutputFormat": "none"
            }, 1);
        verify(!test.find(test.view, "PROCESS").enabled);
        test.click(test.view, "Select Instrument");
        compare(test.view.currentLayer, "instrument_list");
        // The second half of a double click picks nothing.
        test.click(test.view, "Drums");
        compare(test.view.currentLayer, "instrument_list");
        test.clickUntil("Drums", () => test.view.currentLayer === "select_instrument");
        compare(test.view.selectedInstrument, "drums");
        verify(!test.find(test.view, "PROCESS").enabled);
        test.clickUntil("Output Format", () => test.find(test.window.contentItem, "WMV"));
        test.click(test.window.contentItem, "WMV");
        compare(test.view.selectedOutputFormat, "WMV");
        verify(test.find(test.view, "PROCESS").enabled);
    }
    function test_formats_data(): var {
        const audio = ["MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"];
        const table = States.table("isVideo", "selected", "rows", "index", "next", "player");
        table.add("video", true, "MKV", ["MP4", "MKV", "MOV", "WMV", "MPG", "WEBM"].concat(audio), 1, "MOV", "Video");
        table.add("audio", false, "WMA", audio, 5, "WMA", "Audio");
        table.add("of the archive", false, "wma", audio, 5, "WMA", "Audio");
        table.add("not in the list", false, "MKV", audio, -1, "MP3", "Video");
        return table.rows;
    }
    function test_formats(data: var) {
        test.show({
                "isVideo": data.isVideo,
                "selectedOutputFormat": data.selected
            }, 0.6);
        test.view.currentLayer = "success";
        verify(test.shows(test.view, "Open Mix In\nDefault " + data.player + " Player"));
        test.view.currentLayer = "select_instrument";
        test.click(test.view, "Output Format: " + data.selected);
        const rows = test.items(test.window.contentItem).filter(i => i.Accessible.role === Accessible.ListItem);
        compare(rows.map(r => r.modelData), data.rows);
        compare(rows[0].list.chosenIndex, data.index);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !test.find(test.window.contentItem, "WMA"));
        keyClick(Qt.Key_Down);
        compare(test.view.selectedOutputFormat, data.selected);
        test.click(test.view, "Output Format: " + data.selected);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(test.view.selectedOutputFormat, data.next);
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
        test.heed(test.view, ["currentLayerChanged"]);
        const start = Date.now();
        test.view.changeLayerWithDelay("converting");
        test.view.changeLayerWithDelay("success");
        tryCompare(test.view, "currentLayer", "success");
        compare(test.said.length, 1);
        verify(Date.now() - start >= 790);
    }
    function test_keyboard() {
        test.show({
                "currentLayer": "success"
            }, 1);
        test.heed(test.view, ["proceedAnotherFile"]);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Return);
        compare(test.said.length, 1);
    }
    name: "FileProcessing"
}
