// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T
import QtTest
import "accountviews.js" as Views

TestCase {
    id: test

    property Item view: null
    readonly property var heard: []

    name: "Archive"
    when: windowShown
    width: 810
    height: 900
    visible: true

    function init() {
        failOnWarning(/.*/);
        const component = Qt.createComponent("qrc:/qml/Archive.qml");
        test.view = createTemporaryObject(component, test, {
                "width": 540,
                "height": 500,
                "isProcessing": false
            });
        verify(test.view, component.errorString());
        test.heard.length = 0;
        for (const name of ["cancel", "unlockFullAccess", "openFolder", "getFullFile", "changedFormat", "operateFile"])
            test.view[name].connect((a, b, c) => test.heard.push([name, a, b, c].filter(said => said !== undefined)));
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

    function items(item) {
        return Array.from(item.children).reduce((found, child) => found.concat(test.items(child)), [item]);
    }

    function shown() {
        return test.items(test.view).filter(item => item.visible);
    }

    /// The texts of what can be operated in the rows, from left to right.
    function controls() {
        return test.shown().filter(item => item instanceof T.ComboBox || (item instanceof T.AbstractButton && item.icon.name !== "")).map(item => item instanceof T.ComboBox ? "[" + item.displayText + "]" : item.icon.name + ":" + item.text);
    }

    function control(text) {
        return test.shown().find(item => item instanceof T.AbstractButton && item.text === text);
    }

    function test_rows_data() {
        const row = (tag, changes, expected) => ({
                    "tag": tag,
                    "changes": changes,
                    "expected": expected
                });
        return [row("whole result", {}, ["[MP3]", "download:Vocals", "play:Mix"]), row("film", {
                    "isVideo": true,
                    "extension": "webm"
                }, ["[WEBM]", "download:Vocals", "play:Mix"]), row("film of a song's row", {
                    "extension": "mp4"
                }, ["[MP3]", "download:Vocals", "play:Mix"]), row("unknown format of a film", {
                    "isVideo": true,
                    "extension": "ogg"
                }, ["[MP4]", "download:Vocals", "play:Mix"]), row("demo for a demo user", {
                    "demoFile": "yes",
                    "demoUser": "yes"
                }, ["lock:Unlock Full Access", "download:Vocals", "play:Mix"]), row("demo for a customer", {
                    "demoFile": "yes"
                }, ["process:Process Full File", "download:Vocals", "play:Mix"]), row("name that no file can have", {
                    "isUsable": false
                }, [])];
    }

    function test_rows(data) {
        test.show([data.changes]);
        compare(test.controls(), data.expected);
        test.show([]);
        compare(test.controls(), []);
        verify(test.shown().some(item => item.text === "No processed files for last 30 days"));
    }

    function test_buttons_data() {
        const row = (button, changes, heard) => ({
                    "tag": button,
                    "changes": changes,
                    "heard": heard
                });
        const demo = {
            "demoFile": "yes"
        };
        const demoOfADemoUser = {
            "demoFile": "yes",
            "demoUser": "yes"
        };
        const wav = {
            "extension": "WAV"
        };
        return [row("Vocals", {}, [["operateFile", 1, false, "mp3"]]), row("Mix", wav, [["operateFile", 1, true, "wav"]]), row("Process Full File", demo, [["getFullFile", 1]]), row("Unlock Full Access", demoOfADemoUser, [["cancel"], ["unlockFullAccess"]]), row("Open Saved Folder", {}, [["openFolder"]]), row("CLOSE", {}, [["cancel"]])];
    }

    function test_buttons(data) {
        test.show([{
                    "isUsable": false
                }, data.changes]);
        mouseClick(test.control(data.tag));
        compare(test.heard, data.heard);
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
        compare(test.heard, [["changedFormat", 0, "wma"]]);
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
            mouseClick(test.control(name));
        keyClick(Qt.Key_Space);
        compare(test.heard, []);
        tryVerify(() => test.shown().some(item => item.text === "Loading..."));
    }

    function test_fits_data() {
        return Views.scales(["long names", "markup", "demo", "unusable", "empty"]);
    }

    function test_fits(data) {
        test.view.scf = data.scale;
        test.view.width = 540 * data.scale;
        test.view.height = 400 * data.scale;
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
        test.show(names ? [names, names] : []);
        for (const box of test.shown().filter(item => item instanceof T.ComboBox))
            verify(!box.contentItem.truncated, box.displayText);
        compare(Views.misfits(test.view), []);
        if (names)
            verify(test.shown().some(item => item.text === names.name));
    }

    function test_everyControlHasANameForReaders() {
        test.show([{}, {
                    "demoFile": "yes"
                }]);
        for (const item of test.shown()) {
            if (item instanceof T.Control && !(item instanceof T.ScrollBar))
                verify(item.Accessible.name !== "", item);
        }
    }
}
