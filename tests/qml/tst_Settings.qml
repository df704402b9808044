// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T
import QtTest

TestCase {
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

    name: "Settings"
    when: windowShown
    width: 810
    height: 1005
    visible: true

    function init() {
        failOnWarning(/.*/);
        const component = Qt.createComponent("qrc:/qml/Settings.qml");
        test.view = createTemporaryObject(component, test, {
                "width": 540,
                "height": 670
            });
        verify(test.view, component.errorString());
        for (const name of ["saveScf", "cancel", "defaultSettings", "chooseNewPath", "checkPathIsExisted", "save"]) {
            spies[name].target = test.view;
            spies[name].signalName = name;
            spies[name].clear();
        }
        test.view.setProgramSettings(test.stored);
    }

    function items(item) {
        return [].concat(item, ...Array.from(item.children).map(test.items));
    }

    /// The last control of that name, in reading order.
    function control(name) {
        return test.items(test.view).filter(item => item.visible && item.Accessible.name === name).pop();
    }

    function boxes() {
        return test.items(test.view).filter(item => item instanceof T.ComboBox);
    }

    /// What was last said with that signal.
    function said(name) {
        const spy = spies[name];
        compare(spy.count, 1);
        return Array.from(spy.signalArguments[0]);
    }

    function scaleTo(scf) {
        test.view.width = 540 * scf;
        test.view.height = 670 * scf;
        test.view.scf = scf;
        waitForRendering(test.view);
    }

    function test_choices() {
        const audio = ["MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"];
        const expected = [["Not Set", "MP4", "MKV", "MOV", "WMV", "MPG", "WEBM"].concat(audio), ["Not Set"].concat(audio), ["Not Set", "Vocals", "Drums", "Bass", "Piano", "Guitar"], ["Default Video Player", "Song Trimlet", "Video Trimlet", "Karaoke Trimlet"], ["Default Audio Player", "Song Trimlet", "Karaoke Trimlet"]];
        expected.push(Array.from({
                    "length": 91
                }, (_, i) => (0.6 + i / 100).toFixed(2)));
        compare(test.boxes().map(box => Array.from(box.model)), expected);
        compare(test.boxes().map(box => box.displayText), ["WEBM", "Not Set", "Guitar", "Video Trimlet", "Default Audio Player", "1.00"]);
    }

    function test_okSaves_data() {
        return [{
                "tag": "what was stored",
                "given": {},
                "expected": {}
            }, {
                "tag": "typed folders as they are",
                "type": " my songs/ ",
                "given": {},
                "expected": {
                    "default_path_save": " my songs/ "
                }
            }, {
                "tag": "words that are not in the lists",
                "given": {
                    "default_video_format": "webm",
                    "default_instrument": "Harp",
                    "default_audio_player": "Video Trimlet"
                },
                "expected": {
                    "default_video_format": "webm",
                    "default_instrument": "Harp",
                    "default_audio_player": "Video Trimlet"
                }
            }, {
                "tag": "a choice in place of such a word",
                "given": {
                    "default_instrument": "Harp"
                },
                "choose": "Instrument to Remove:",
                "keys": [Qt.Key_Down],
                "expected": {
                    "default_instrument": "Vocals"
                }
            }, {
                "tag": "none for the first entry",
                "given": {},
                "choose": "Instrument to Remove:",
                "keys": [Qt.Key_Home],
                "expected": {
                    "default_instrument": "none"
                }
            }];
    }

    function test_okSaves(data) {
        test.view.setProgramSettings(Object.assign({}, test.stored, data.given));
        if (data.type)
            test.control("Save File Location").text = data.type;
        if (data.choose)
            test.control(data.choose).forceActiveFocus();
        for (const key of data.keys ?? [])
            keyClick(key);
        mouseClick(test.control("OK"));
        compare(test.said("save")[0], Object.assign({}, test.stored, data.expected));
    }

    function test_unknownWordsInTheBoxes() {
        test.view.setProgramSettings(Object.assign({}, test.stored, {
                    "default_video_format": "webm",
                    "default_video_player": "Winamp"
                }));
        compare(test.boxes().map(box => box.currentIndex).slice(0, 4), [0, 0, 5, -1]);
    }

    function test_buttons_data() {
        const row = (button, signalName, said) => ({
                    "tag": button,
                    "signalName": signalName,
                    "said": said
                });
        return [row("Home", "cancel", []), row("CANCEL", "cancel", []), row("Restore Default Settings", "defaultSettings", []), row("Choose a folder: Save File Location", "chooseNewPath", ["default_path_save", "/music/saved"]), row("Choose a folder: Open File Location", "chooseNewPath", ["default_path_open", ""])];
    }

    function test_buttons(data) {
        mouseClick(test.control(data.tag));
        compare(test.said(data.signalName), data.said);
    }

    function test_chosenFolders() {
        test.view.updatePathField("/a", "default_path_open");
        test.view.updatePathField("/b", "default_path_save");
        compare(test.control("Open File Location").text, "/a");
        compare(test.control("Save File Location").text, "/b");
    }

    function test_players_data() {
        return [{
                "tag": "Opening Video File In:",
                "field": "video"
            }, {
                "tag": "Opening Audio File In:",
                "field": "audio"
            }];
    }

    function test_players(data) {
        const box = test.control(data.tag);
        mouseClick(box);
        tryVerify(() => box.popup.opened);
        let isOpen = true;
        test.view.checkPathIsExisted.connect(() => isOpen = box.popup.opened);
        mouseClick(box, 20, box.height + 36);
        tryVerify(() => !box.popup.visible);
        verify(!isOpen);
        compare(test.said("checkPathIsExisted"), [box.currentText, data.field]);
        verify(box.currentIndex > 0);
        test.view.resetOpening(data.field);
        compare(box.currentIndex, 0);
        mouseClick(test.control("OK"));
        compare(test.said("save")[0]["default_" + data.field + "_player"], box.textAt(0));
    }

    function test_scale() {
        const box = test.control("Gui Resizing");
        for (let percent = 60; percent <= 150; ++percent) {
            test.view.scf = percent / 100;
            compare(box.displayText, (percent / 100).toFixed(2));
        }
        test.scaleTo(1);
        box.forceActiveFocus();
        keyClick(Qt.Key_Down);
        mouseClick(test.control("Apply the size"));
        compare(test.said("saveScf"), [1.01]);
        test.view.scf = 7;
        compare(box.displayText, "1.50");
    }

    function test_nothingIsClipped_data() {
        return [0.6, 0.75, 1, 1.23, 1.5].map(scf => ({
                        "tag": String(scf),
                        "scf": scf
                    }));
    }

    function test_nothingIsClipped(data) {
        test.scaleTo(data.scf);
        for (const [name, width] of [["OK", 100], ["CANCEL", 100], ["Restore Default Settings", 190], ["Apply the size", 100], ["Gui Resizing", 70], ["Opening Video File In:", 200], ["Instrument to Remove:", 150]])
            fuzzyCompare(test.control(name).width, width * data.scf, 1, name);
        for (const item of test.items(test.view).filter(item => item.visible && item.width > 0)) {
            const at = item.mapToItem(test.view, 0, 0);
            const inside = at.x >= 0 && at.y >= 0 && at.x + item.width <= test.view.width && at.y + item.height <= test.view.height;
            verify(inside || item.Accessible.ignored || item.text === undefined, "outside: " + item);
            if (item instanceof Text)
                verify(!item.truncated && item.paintedWidth <= item.width + 0.5 && item.paintedHeight <= item.height + 0.5, "clipped: " + item.text);
            if (item instanceof T.Control)
                verify(item.Accessible.name !== "", "nameless: " + item);
        }
    }

    QtObject {
        id: spies

        readonly property SignalSpy saveScf: SignalSpy {
        }
        readonly property SignalSpy cancel: SignalSpy {
        }
        readonly property SignalSpy defaultSettings: SignalSpy {
        }
        readonly property SignalSpy chooseNewPath: SignalSpy {
        }
        readonly property SignalSpy checkPathIsExisted: SignalSpy {
        }
        readonly property SignalSpy save: SignalSpy {
        }
    }
}
