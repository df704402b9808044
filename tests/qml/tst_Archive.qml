// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property Item view: null

    function init() {
        test.forbidWarnings();
        test.open(1);
    }
    function open(scale: real) {
        test.view = test.showView("Archive", [540, 500], scale, {
                "isProcessing": false
            });
        test.heed(test.view, ["cancel", "unlockFullAccess", "openFolder", "getFullFile", "changedFormat", "operateFile"]);
    }
    function record(changes) {
        return Object.assign({
                "name": "Song",
                "deleted": "21 Dec 2026",
                "instrument": "vocals",
                "extension": "mp3",
                "demoFile": "no",
                "local_file_path": "/in/Song.mp4",
                "ai_id": 17,
                "btnInstrument": "download",
                "btnMix": "play",
                "demoUser": "no",
                "isVideo": false
            }, changes);
    }

    /// Shows the usual record with these changes, one row for each.
    function show(changes) {
        test.view.updateFiles(changes.map(test.record));
        waitForRendering(test.view);
    }

    function shown(): var {
        return test.items(test.view);
    }
    /// The texts of what can be operated in the rows, from left to right.
    function controls() {
        return test.shown().filter(item => item instanceof T.ComboBox || (item instanceof T.AbstractButton && item.icon.name !== "")).map(item => item instanceof T.ComboBox ? "[" + item.displayText + "]" : item.icon.name + ":" + item.text);
    }

    function test_rows_data() {
        const table = States.table("changes", "expected");
        const results = ["download:Vocals", "play:Mix"];
        table.add("whole result", {}, ["[MP3]"].concat(results));
        table.add("film", {
                "isVideo": true,
                "extension": "webm"
            }, ["[WEBM]"].concat(results));
        table.add("film of a song's row", {
                "extension": "mp4"
            }, ["[MP3]"].concat(results));
        table.add("unknown format of a film", {
                "isVideo": true,
                "extension": "ogg"
            }, ["[MP4]"].concat(results));
        table.add("demo for a demo user", {
                "demoFile": "yes",
                "demoUser": "yes"
            }, ["lock:Unlock Full Access"].concat(results));
        table.add("demo for a customer", {
                "demoFile": "yes"
            }, ["process:Process Full File"].concat(results));
        table.add("name that no file can have", {
                "isUsable": false
            }, []);
        return table.rows;
    }

    function test_rows(data) {
        test.show([data.changes]);
        compare(test.controls(), data.expected);
        test.show([]);
        compare(test.controls(), []);
        verify(test.shows(test.view, "No processed files for last 30 days"));
    }

    /// The second row's, or the window's own.
    function test_buttons() {
        for (const [button, changes, said] of [["Vocals", {}, [["operateFile", 1, false, "mp3"]]], ["Mix", {
                    "extension": "WAV"
                }, [["operateFile", 1, true, "wav"]]], ["Process Full File", {
                    "demoFile": "yes"
                }, [["getFullFile", 1]]], ["Unlock Full Access", {
                    "demoFile": "yes",
                    "demoUser": "yes"
                }, [["cancel"], ["unlockFullAccess"]]], ["Open Saved Folder", {}, [["openFolder"]]], ["CLOSE", {}, [["cancel"]]]]) {
            test.show([{
                        "isUsable": false
                    }, changes]);
            test.click(test.view, button);
            compare(test.said, said);
            test.said = [];
        }
    }

    function test_aChosenFormatStaysWithItsRow() {
        test.view.updateFiles(Array.from({
                    "length": 10000
                }, (_, i) => test.record({
                            "name": "Song " + i,
                            "isVideo": i % 2 === 0
                        })));
        waitForRendering(test.view);
        const list = test.shown().find(item => item instanceof ListView);
        verify(list.contentItem.children.length < 60);
        const box = test.shown().find(item => item instanceof T.ComboBox);
        box.forceActiveFocus();
        keyClick(Qt.Key_End);
        compare(test.said, [["changedFormat", 0, "wma"]]);
        test.view.changeButtons(0, "play", "download");
        compare(test.controls().slice(0, 3), ["[WMA]", "play:Vocals", "download:Mix"]);
        const first = () => test.shown().filter(item => item.Accessible.description === "Song 0" || item.Accessible.description === "Play Song 0");
        compare(first().length, 2);
        list.currentIndex = 9999;
        tryVerify(() => first().length === 0);
        list.currentIndex = 0;
        tryVerify(() => first().length === 2);
        compare(first().map(item => item.displayText ?? item.text), ["WMA", "Vocals"]);
    }

    function test_theOverlayKeepsEverythingBack() {
        test.show([{}]);
        test.view.isProcessing = true;
        for (const name of ["Vocals", "CLOSE"])
            test.click(test.view, name);
        keyClick(Qt.Key_Space);
        compare(test.said, []);
        verify(test.shows(test.view, "Loading..."));
    }

    function test_fits_data() {
        return States.rows(["long names", "markup", "demo", "unusable", "empty"]);
    }

    function test_fits(data) {
        test.open(data.scale);
        const names = {
            "long names": {
                "name": "A very long name of a song ".repeat(9),
                "instrument": "hurdygurdyorchestra",
                "isVideo": true,
                "extension": "webm"
            },
            "markup": {
                "name": "<img src=\"http://x\"><b>Song</b>",
                "instrument": "<b>a",
                "deleted": "<i>x</i>"
            },
            "demo": {
                "demoFile": "yes",
                "demoUser": "yes",
                "name": "x".repeat(200)
            },
            "unusable": {
                "isUsable": false,
                "name": "../".repeat(90)
            }
        }[data.state];
        if (names)
            test.show([names, names]);
        for (const box of test.shown().filter(item => item instanceof T.ComboBox))
            verify(!box.contentItem.truncated, box.displayText);
        test.checkFit(test.view);
        test.checkNames(test.view);
        if (names)
            verify(test.shows(test.view, names.name));
    }

    mayShorten: /./
    name: "Archive"
}
