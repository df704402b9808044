// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "../../tests/qml"
import "../../tests/qml/states.js" as States

// Pictures every window in every state into the current folder. Run by make.py.
ViewCase {
    id: shots

    readonly property var settings: ({
            "default_path_save": "/home/anna/Documents/TEKO/Save",
            "default_path_open": "/home/anna/Music",
            "default_video_format": "MP4",
            "default_audio_format": "none",
            "default_instrument": "Vocals",
            "default_video_player": "Default Video Player",
            "default_audio_player": "Song Trimlet"
        })
    readonly property var archive: [["Evening Song", "vocals", "mp4", "no", true, "play", "play"], ["A rather long song name, live at the harbour, 2024-06-01", "guitar", "flac", "no", false, "download", "play"], ["Demo of a Waltz", "piano", "mp3", "yes", false, "download", "download"], ["Night Train", "drums", "webm", "no", true, "download", "download"]].map(r => ({
                    "name": r[0],
                    "instrument": r[1],
                    "extension": r[2],
                    "demoFile": r[3],
                    "isVideo": r[4],
                    "btnInstrument": r[5],
                    "btnMix": r[6],
                    "deleted": "21 Dec 2026",
                    "demoUser": "no",
                    "local_file_path": "/home/anna/Music/a.mp4",
                    "ai_id": 1
                }))
    readonly property var account: ({
            "userName": "Anna Musterfrau",
            "userEmail": "anna@example.org",
            "planType": "Personal",
            "planVersion": "1.0",
            "planPeriod": "12 months",
            "planAdded": "2026-01-15",
            "filesLeft": 7
        })
    readonly property var windows: [{
            "name": "settings",
            "view": "Settings",
            "size": [540, 670],
            "after": view => view.setProgramSettings(shots.settings)
        }, {
            "name": "archive",
            "view": "Archive",
            "size": [540, 400],
            "set": {
                "isProcessing": false
            },
            "after": view => view.updateFiles(shots.archive)
        }, {
            "name": "archive-empty",
            "view": "Archive",
            "size": [540, 400],
            "set": {
                "isProcessing": false
            }
        }, {
            "name": "archive-loading",
            "view": "Archive",
            "size": [540, 400]
        }, {
            "name": "archive-downloading",
            "view": "ArchiveHandler",
            "size": [470, 350],
            "set": {
                "mode": "downloading",
                "downloadingPercent": 58,
                "fileName": "vocals - Evening Song.mp4"
            }
        }, {
            "name": "archive-converting",
            "view": "ArchiveHandler",
            "size": [470, 350],
            "set": {
                "mode": "converting",
                "fileName": "vocals - Evening Song.mp4"
            }
        }].concat(["none", "active", "expired"].map(licence => ({
                        "name": "account-" + licence,
                        "view": "MyAccount",
                        "size": [470, 400],
                        "set": Object.assign({
                                "licence": licence
                            }, shots.account)
                    })))

    function take(item: var, name: string, scale: real) {
        mouseMove(item, item.width / 2, item.height - 2);
        grabImage(item).save(name + "-" + scale.toFixed(1) + ".png");
    }
    function test_processing_data(): var {
        return States.rows(States.processing);
    }
    function test_processing(data: var) {
        const view = shots.showView("FileProcessing", [470, 350], data.scale, States.chosen);
        for (const [key, value] of Object.entries(data.state.set))
            view[key] = value;
        if (data.state.click !== undefined)
            shots.click(view, data.state.click);
        shots.take(view, "processing-" + data.state.name, data.scale);
    }
    function test_windows_data(): var {
        return States.rows(shots.windows);
    }
    function test_windows(data: var) {
        const view = shots.showView(data.state.view, data.state.size, data.scale, data.state.set ?? {});
        if (data.state.after !== undefined)
            data.state.after(view);
        shots.take(view, data.state.name, data.scale);
    }
    function test_main_data(): var {
        return States.rows(["home", "menu", "signin", "loading"]);
    }
    function test_main(data: var) {
        const main = shots.make("main", null, {
                "scf": data.scale
            });
        tryCompare(main.contentItem, "width", 470 * data.scale);
        tryCompare(findChild(main, "account"), "checks", 1);
        if (data.state !== "loading")
            main.setSignedIn(data.state !== "signin");
        if (data.state === "menu")
            shots.click(main.contentItem, "Help");
        shots.take(main.contentItem, "main-" + data.state, data.scale);
    }

    name: "Screenshots"
}
