// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Window
import QtTest

// Pictures every view in every state into the current folder. Run by make.py.
TestCase {
    id: shots

    readonly property var scales: [0.6, 1.0, 1.5]
    readonly property string longName: "A rather long song name, live at the harbour, 2024-06-01.flac"
    readonly property var states: [{
            "name": "select",
            "set": {
                "fileName": "Evening Song.mp4"
            }
        }, {
            "name": "selected",
            "set": {
                "fileName": shots.longName,
                "selectedInstrument": "guitar",
                "selectedOutputFormat": "FLAC"
            }
        }, {
            "name": "formats",
            "set": {
                "fileName": "Evening Song.mp4",
                "selectedInstrument": "vocals",
                "selectedOutputFormat": "MOV"
            },
            "click": "Output Format: MOV"
        }, {
            "name": "instruments",
            "set": {
                "currentLayer": "instrument_list"
            }
        }, {
            "name": "uploading",
            "set": {
                "currentLayer": "uploading",
                "uploadingPercent": 42.5
            }
        }, {
            "name": "processing",
            "set": {
                "currentLayer": "processing",
                "remainingProcessingTime": 117
            }
        }, {
            "name": "downloading",
            "set": {
                "currentLayer": "downloading",
                "downloading1Percent": 64,
                "downloading2Percent": 31
            }
        }, {
            "name": "downloaded",
            "set": {
                "currentLayer": "downloading",
                "downloading1Percent": 100,
                "downloading2Percent": 73
            }
        }, {
            "name": "converting",
            "set": {
                "currentLayer": "converting",
                "convertingText": "Converting 'mix without vocals - file.wav'\nto selected output format"
            }
        }, {
            "name": "success",
            "set": {
                "currentLayer": "success",
                "isDemo": false
            }
        }, {
            "name": "success-demo",
            "set": {
                "currentLayer": "success"
            }
        }]

    function find(item: var, name: string): var {
        for (let i = 0; i < item.children.length; ++i) {
            const child = item.children[i];
            if (child.visible && child.Accessible.name === name)
                return child;
            const found = shots.find(child, name);
            if (found)
                return found;
        }
        return null;
    }
    function take(item: var, name: string, scale: real) {
        mouseMove(item, item.width / 2, item.height - 2);
        grabImage(item).save(name + "-" + scale.toFixed(1) + ".png");
    }
    function rows(states: var): var {
        const all = [];
        for (const scale of shots.scales) {
            for (const state of states) {
                all.push({
                        "tag": (state.name ?? state) + scale,
                        "scale": scale,
                        "state": state
                    });
            }
        }
        return all;
    }
    function test_processing_data(): var {
        return shots.rows(shots.states);
    }
    function test_processing(data: var) {
        const window = createTemporaryObject(frame, null, {
                "width": 470 * data.scale,
                "height": 350 * data.scale
            });
        tryCompare(window, "visible", true);
        const view = createTemporaryObject(Qt.createComponent("qrc:/qml/FileProcessing.qml"), window.contentItem, {
                "width": 470 * data.scale,
                "height": 350 * data.scale,
                "scf": data.scale,
                "selectedInstrument": "vocals",
                "selectedOutputFormat": "MP4",
                "fileName": "Evening Song.mp4"
            });
        for (const [key, value] of Object.entries(data.state.set))
            view[key] = value;
        if (data.state.name === "select") {
            view.selectedInstrument = "none";
            view.selectedOutputFormat = "none";
        }
        view.loaded();
        tryCompare(view, "gradiendVar", 1);
        if (data.state.click !== undefined)
            mouseClick(shots.find(view, data.state.click));
        shots.take(view, "processing-" + data.state.name, data.scale);
    }
    function test_main_data(): var {
        return shots.rows(["home", "menu", "disabled", "loading"]);
    }
    function test_main(data: var) {
        const window = createTemporaryObject(Qt.createComponent("qrc:/qml/main.qml"), null, {
                "scf": data.scale
            });
        tryCompare(window, "visible", true);
        if (data.state !== "loading")
            window.setSignedIn(data.state !== "disabled");
        if (data.state === "menu")
            mouseClick(shots.find(window.contentItem, "Help"));
        shots.take(window.contentItem, "main-" + data.state, data.scale);
    }

    function test_settings_data(): var {
        return shots.rows(["all", "formats"]);
    }
    function test_settings(data: var) {
        const window = createTemporaryObject(frame, null, {
                "width": 540 * data.scale,
                "height": 670 * data.scale
            });
        tryCompare(window, "visible", true);
        const view = createTemporaryObject(Qt.createComponent("qrc:/qml/Settings.qml"), window.contentItem, {
                "width": 540 * data.scale,
                "height": 670 * data.scale,
                "scf": data.scale
            });
        view.setProgramSettings({
                "default_path_save": "/home/ada/Documents/TEKO/Save",
                "default_path_open": "",
                "default_video_format": "MKV",
                "default_audio_format": "none",
                "default_instrument": "Vocals",
                "default_video_player": "Default Video Player",
                "default_audio_player": "Karaoke Trimlet"
            });
        view.loaded();
        tryCompare(view, "gradiendVar", 1);
        if (data.state === "formats")
            mouseClick(shots.find(view, "Video Output Format:"));
        shots.take(view, "settings-" + data.state, data.scale);
    }

    name: "Screenshots"

    Component {
        id: frame

        Window {
            visible: true
        }
    }
    when: windowShown
    width: 705
    height: 525
    visible: true
}
