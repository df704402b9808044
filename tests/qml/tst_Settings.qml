// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property Item view: null
    readonly property var stored: ({
            "default_path_save": "/music/saved",
            "default_path_open": "",
            "default_video_format": "WEBM",
            "default_audio_format": "none",
            "default_instrument": "Guitar",
            "default_video_player": "Video Trimlet",
            "default_audio_player": "Default Audio Player"
        })

    function init() {
        test.forbidWarnings();
        test.show(1);
    }
    function show(scale: real) {
        test.view = test.showView("Settings", [540, 670], scale, {});
        test.heed(test.view, ["saveScf", "cancel", "defaultSettings", "chooseNewPath", "checkPathIsExisted", "save"]);
        test.view.setProgramSettings(test.stored);
    }
    function control(name: string): var {
        return test.find(test.view, name);
    }
    function boxes(): var {
        return test.items(test.view).filter(item => item instanceof T.ComboBox);
    }

    function test_choices() {
        const audio = ["MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"];
        const scales = Array.from(Array(91).keys()).map(i => (0.6 + i / 100).toFixed(2));
        compare(test.boxes().map(box => Array.from(box.model)), [["Not Set", "MP4", "MKV", "MOV", "WMV", "MPG", "WEBM"].concat(audio), ["Not Set"].concat(audio), ["Not Set", "Vocals", "Drums", "Bass", "Piano", "Guitar"], ["Default Video Player", "Song Trimlet", "Video Trimlet", "Karaoke Trimlet"], ["Default Audio Player", "Song Trimlet", "Karaoke Trimlet"], scales]);
        compare(test.boxes().map(box => box.displayText), ["WEBM", "Not Set", "Guitar", "Video Trimlet", "Default Audio Player", "1.00"]);
    }

    /// Words that are not in the lists stay until the user chooses another one.
    function test_okSaves() {
        const instrument = test.control("Instrument to Remove:");
        const expected = Object.assign({}, test.stored, {
                "default_video_format": "webm",
                "default_instrument": "Harp",
                "default_audio_player": "Winamp"
            });
        test.view.setProgramSettings(expected);
        compare(test.boxes().map(box => box.currentIndex).slice(0, 5), [0, 0, 0, 2, -1]);
        mouseClick(test.control("OK"));
        compare(test.said.pop(), ["save", expected]);
        expected.default_path_save = " my songs/ ";
        test.control("Save File Location").text = " my songs/ ";
        for (const [key, value] of [[Qt.Key_Down, "Vocals"], [Qt.Key_Home, "none"]]) {
            instrument.forceActiveFocus();
            keyClick(key);
            mouseClick(test.control("OK"));
            expected.default_instrument = value;
            compare(test.said.pop(), ["save", expected]);
        }
    }

    function test_buttons() {
        for (const [name, ...expected] of [["Home", "cancel"], ["CANCEL", "cancel"], ["Restore Default Settings", "defaultSettings"], ["Choose a folder: Save File Location", "chooseNewPath", "default_path_save", "/music/saved"], ["Choose a folder: Open File Location", "chooseNewPath", "default_path_open", ""], ["Apply the size", "saveScf", 1]]) {
            mouseClick(test.control(name));
            compare(test.said.pop(), expected);
        }
    }

    function test_chosenFolders() {
        test.view.updatePathField("/a", "default_path_open");
        test.view.updatePathField("/b", "default_path_save");
        compare(test.control("Open File Location").text, "/a");
        compare(test.control("Save File Location").text, "/b");
    }

    function test_players_data() {
        const table = States.table("label");
        table.add("video", "Opening Video File In:");
        table.add("audio", "Opening Audio File In:");
        return table.rows;
    }
    function test_players(data) {
        const box = test.control(data.label);
        mouseClick(box);
        tryVerify(() => box.popup.opened);
        let isOpen = true;
        test.view.checkPathIsExisted.connect(() => isOpen = box.popup.opened);
        mouseClick(box, 20, box.height + 36);
        tryVerify(() => !box.popup.visible);
        verify(!isOpen);
        compare(test.said.pop(), ["checkPathIsExisted", "Song Trimlet", data.tag]);
        compare(box.displayText, "Song Trimlet");
        test.view.resetOpening(data.tag);
        mouseClick(test.control("OK"));
        compare(test.said.pop()[1]["default_" + data.tag + "_player"], box.textAt(0));
    }

    function test_scale() {
        const box = test.control("Gui Resizing");
        for (let percent = 60; percent <= 150; ++percent) {
            test.view.scf = percent / 100;
            compare(box.displayText, (percent / 100).toFixed(2));
        }
        test.view.scf = 7;
        compare(box.displayText, "1.50");
        box.forceActiveFocus();
        keyClick(Qt.Key_Home);
        compare(box.displayText, "0.60");
        test.view.setProgramSettings(test.stored);
        compare(box.displayText, "1.50");
    }

    function test_nothingIsClipped() {
        for (const scale of [0.6, 0.75, 1, 1.23, 1.5]) {
            test.show(scale);
            for (const [name, width] of [["OK", 100], ["CANCEL", 100], ["Restore Default Settings", 190], ["Apply the size", 100], ["Gui Resizing", 70], ["Opening Video File In:", 200], ["Instrument to Remove:", 150]])
                fuzzyCompare(test.control(name).width, width * scale, 1, name);
            test.checkFit(test.view);
            test.checkNames(test.view);
        }
    }

    name: "Settings"
}
