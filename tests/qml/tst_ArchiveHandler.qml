// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

ViewCase {
    id: test

    function test_modes_data() {
        return States.rows(["downloading", "converting"]);
    }
    function test_modes(data) {
        const view = test.showView("ArchiveHandler", [470, 350], data.scale, {});
        test.heed(view, ["cancelProcess"]);
        verify(!test.find(view, "CANCEL"));
        view.mode = data.state;
        view.fileName = "<b>Song</b>.mp4";
        view.downloadingPercent = 33;
        waitForRendering(view);
        verify(test.shows(view, data.state === "downloading" ? "Downloading file: 33.0%" : "File Converting"));
        verify(test.shows(view, "File Name: <b>Song</b>.mp4"));
        test.click(view, "CANCEL");
        compare(test.said.length, 1);
        view.fileName = "A very long name of a song ".repeat(9);
        view.downloadingPercent = 100;
        test.checkFit(view);
        test.checkNames(view);
        view.mode = "";
        compare([view.fileName, view.downloadingPercent], ["", 0]);
        verify(!test.find(view, "CANCEL"));
    }

    name: "ArchiveHandler"
}
