// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "accountviews.js" as Views

TestCase {
    id: test

    property Item view: null

    name: "ArchiveHandler"
    when: windowShown
    width: 705
    height: 525
    visible: true

    function init() {
        failOnWarning(/.*/);
        const component = Qt.createComponent("qrc:/qml/ArchiveHandler.qml");
        test.view = createTemporaryObject(component, test, {
                "width": 470,
                "height": 350
            });
        verify(test.view, component.errorString());
        cancels.target = test.view;
        cancels.clear();
    }

    function shown(text) {
        return Views.find(test.view, item => item.text === text && item.visible);
    }

    function test_modes_data() {
        return [{
                "tag": "downloading",
                "text": "Downloading file: 33.0%"
            }, {
                "tag": "converting",
                "text": "File Converting"
            }];
    }

    function test_modes(data) {
        verify(!test.shown("CANCEL"));
        test.view.mode = data.tag;
        test.view.fileName = "<b>Song</b>.mp4";
        test.view.downloadingPercent = 33;
        waitForRendering(test.view);
        verify(test.shown(data.text));
        verify(test.shown("File Name: <b>Song</b>.mp4"));
        mouseClick(test.shown("CANCEL"));
        compare(cancels.count, 1);
        test.view.mode = "";
        compare([test.view.fileName, test.view.downloadingPercent], ["", 0]);
        verify(!test.shown("CANCEL"));
    }

    function test_fits_data() {
        return Views.scales(["downloading", "converting"]);
    }

    function test_fits(data) {
        test.view.scf = data.scale;
        test.view.width = 470 * data.scale;
        test.view.height = 350 * data.scale;
        test.view.mode = data.state;
        test.view.fileName = "A very long name of a song ".repeat(9);
        test.view.downloadingPercent = 100;
        waitForRendering(test.view);
        compare(Views.misfits(test.view), []);
    }

    SignalSpy {
        id: cancels

        signalName: "cancelProcess"
    }
}
