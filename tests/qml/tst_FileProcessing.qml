// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "cases.js" as Cases

ViewCase {
    id: test

    function test_choices() {
        test.show("processing-select", 1);
        for (const [instrument, format] of [["bass", "none"], ["none", "MP3"], ["bass", "MP3"]]) {
            test.view.selectedInstrument = instrument;
            test.view.selectedOutputFormat = format;
            compare(test.find("PROCESS").enabled, instrument === "bass" && format === "MP3");
        }
        test.click("Instrument: Bass");
        test.layOut();
        test.click("Drums");
        compare(test.view.currentLayer + " " + test.view.selectedInstrument, "select_instrument drums");
    }
    function test_formats() {
        for (const [isVideo, selected, first, next] of [[true, "MKV", "MP4 MKV MOV WMV MPG WEBM ", "MOV"], [false, "wma", "", "WMA"], [false, "MKV", "", "MP3"]]) {
            test.show("processing-selected", 1);
            test.view.isVideo = isVideo;
            test.view.selectedOutputFormat = selected;
            test.click("Output Format: " + selected);
            compare(test.items().filter(item => item.modelData).map(item => item.modelData).join(" "), first + "MP3 WAV M4A AIFF FLAC WMA");
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(test.view.selectedOutputFormat, next);
        }
    }
    function test_delayedLayers() {
        test.show("processing-selected", 1);
        const timer = Array.from(test.view.resources).find(object => object.layer !== undefined);
        test.view.changeLayerWithDelay("converting");
        test.view.changeLayerWithDelay("success");
        compare([test.view.currentLayer, timer.running, timer.interval], ["select_instrument", true, 800]);
        timer.triggered();
        compare([test.view.currentLayer, timer.running], ["success", false]);
        test.view.changeLayerWithDelay("converting");
        test.view.currentLayer = "select_instrument";
        verify(!timer.running);
    }
    function test_estimate_data(): var {
        return Cases.table(`
            steps | seconds | total | percent
            takeAnswer 50, tickSecond, tickFraction, tickFraction | 49 | 50 | 3.333
            takeAnswer 50, tickSecond, tickFraction, tickSecond | 48 | 50 | 4
            takeAnswer 3, tickSecond, tickFraction | 2 | 3 | 44.443
            takeAnswer 50, tickSecond, takeAnswer 60 | 60 | 50 | 0
            takeAnswer 2, tickSecond, tickSecond, tickSecond | 1 | 2 | 50
            tickSecond, takeAnswer 40 | 40 | 40 | 0
            takeAnswer 5, takeAnswer 0, tickFraction | 0 | 5 | 100
            takeAnswer 9, tickSecond, resetData | -1 | -1 | 0
        `);
    }
    function test_estimate(data: var) {
        test.show("processing-processing", 1);
        const estimate = test.having("takeAnswer");
        estimate.resetData();
        for (const step of data.steps.split(", "))
            estimate[step.split(" ")[0]](Number(step.split(" ")[1]));
        compare([estimate.seconds, estimate.totalSeconds].join(), [data.seconds, data.total].join());
        fuzzyCompare(estimate.percent, Number(data.percent), 0.001);
    }
    /// The nearer the end, the sooner; once for each answer, one that repeats the last as well.
    function test_polling() {
        test.show("processing-processing", 1);
        const estimate = test.having("takeAnswer");
        for (const [seconds, interval] of [[1, 2000], [20, 2000], [21, 5000], [40, 5000], [41, 20000], [100, 20000], [101, 60000]]) {
            test.view.remainingProcessingTime = seconds;
            compare(estimate.pollingInterval, interval);
        }
        estimate.tickSecond();
        test.view.remainingProcessingTimeChanged();
        compare([estimate.seconds, estimate.counting, estimate.polling], [101, true, true]);
        estimate.takeAnswer(2);
        estimate.tickSecond();
        verify(!estimate.counting);
        estimate.tickPolling();
        test.view.currentLayer = "success";
        estimate.tickPolling();
        compare(test.takeRecorded(), "getRemainsSeconds");
    }

    name: "FileProcessing"
}
