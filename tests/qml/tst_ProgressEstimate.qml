// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest

ViewCase {
    id: test

    property var estimate

    function init() {
        test.forbidWarnings();
        test.estimate = test.make("ProgressEstimate", test, {
                "active": true
            });
        polls.target = test.estimate;
        polls.clear();
    }
    function answer(seconds: int) {
        test.estimate.takeAnswer(seconds);
    }
    /// Runs steps such as ["answer", 50] or ["second"].
    function run(steps: var) {
        for (const [what, value] of steps) {
            if (what === "answer")
                test.answer(value);
            else if (what === "second")
                test.estimate.tickSecond();
            else if (what === "fraction")
                test.estimate.tickFraction();
            else if (what === "poll")
                test.estimate.tickPolling();
            else if (what === "reset")
                test.estimate.resetData();
            else
                test.estimate.active = value;
        }
    }
    function test_states_data(): var {
        const second = ["second"], fraction = ["fraction"];
        return [{
                "tag": "nothing yet",
                "steps": [],
                "seconds": -1,
                "total": -1,
                "percent": 0
            }, {
                "tag": "first answer",
                "steps": [["answer", 50]],
                "seconds": 50,
                "total": 50,
                "percent": 0
            }, {
                "tag": "a second",
                "steps": [["answer", 50], second],
                "seconds": 49,
                "total": 50,
                "percent": 2
            }, {
                "tag": "a third of the next",
                "steps": [["answer", 50], second, fraction],
                "seconds": 49,
                "total": 50,
                "percent": 2 + 2 / 3
            }, {
                "tag": "two thirds",
                "steps": [["answer", 50], second, fraction, fraction],
                "seconds": 49,
                "total": 50,
                "percent": 2 + 4 / 3
            }, {
                "tag": "thirds start again",
                "steps": [["answer", 50], second, fraction, second],
                "seconds": 48,
                "total": 50,
                "percent": 4
            }, {
                "tag": "steps are rounded",
                "steps": [["answer", 3], second, fraction],
                "seconds": 2,
                "total": 3,
                "percent": 100 / 3 + 33.33 / 3
            }, {
                "tag": "later answer keeps the total",
                "steps": [["answer", 50], second, ["answer", 10]],
                "seconds": 10,
                "total": 50,
                "percent": 80
            }, {
                "tag": "larger answer",
                "steps": [["answer", 50], second, ["answer", 60]],
                "seconds": 60,
                "total": 50,
                "percent": 0
            }, {
                "tag": "the last second waits",
                "steps": [["answer", 2], second, second, second],
                "seconds": 1,
                "total": 2,
                "percent": 50
            }, {
                "tag": "late first answer",
                "steps": [second, ["answer", 40]],
                "seconds": 40,
                "total": 40,
                "percent": 0
            }, {
                "tag": "ready",
                "steps": [["answer", 2], second, fraction, fraction, ["answer", 0]],
                "seconds": 0,
                "total": 2,
                "percent": 100
            }, {
                "tag": "no thirds at the end",
                "steps": [["answer", 5], ["answer", 0], fraction],
                "seconds": 0,
                "total": 5,
                "percent": 100
            }, {
                "tag": "unknown",
                "steps": [["answer", 9], ["answer", -1]],
                "seconds": -1,
                "total": 9,
                "percent": 100
            }, {
                "tag": "unwatched",
                "steps": [["active", false], ["answer", 9]],
                "seconds": -1,
                "total": -1,
                "percent": 0
            }, {
                "tag": "reset",
                "steps": [["answer", 9], second, fraction, ["reset"]],
                "seconds": -1,
                "total": -1,
                "percent": 0
            }];
    }
    function test_states(data: var) {
        test.run(data.steps);
        compare(test.estimate.seconds, data.seconds);
        compare(test.estimate.totalSeconds, data.total);
        fuzzyCompare(test.estimate.percent, data.percent, 0.001);
    }
    function test_polling_data(): var {
        return [[1, 2000], [20, 2000], [21, 5000], [40, 5000], [41, 20000], [100, 20000], [101, 60000], [4000, 60000]].map(r => ({
                        "tag": r[0],
                        "remaining": r[0],
                        "interval": r[1]
                    }));
    }
    function test_polling(data: var) {
        test.answer(data.remaining);
        compare(test.estimate.pollingInterval, data.interval);
        verify(test.estimate.polling);
        test.run([["poll"]]);
        compare(polls.count, 1);
        test.run([["active", false], ["poll"]]);
        compare(polls.count, 1);
        verify(!test.estimate.polling);
    }
    function test_countdownStopsAtOne() {
        test.answer(2);
        verify(test.estimate.counting);
        test.run([["second"]]);
        verify(!test.estimate.counting);
        test.answer(7);
        verify(test.estimate.counting);
        test.run([["active", false]]);
        verify(!test.estimate.counting);
    }
    /// A service that does not answer is not asked again, one that repeats itself is.
    function test_oneAnswerOnePoll() {
        test.answer(1);
        tryCompare(polls, "count", 1);
        verify(!test.estimate.polling);
        test.answer(1);
        verify(test.estimate.polling);
    }
    /// The timers themselves: a second and then its thirds pass without anybody calling the ticks.
    function test_timersTick() {
        test.answer(50);
        tryCompare(test.estimate, "seconds", 49);
        tryCompare(test.estimate, "additionalCalculating", 2);
        tryCompare(test.estimate, "seconds", 48);
        compare(test.estimate.additionalCalculating, 0);
    }
    SignalSpy {
        id: polls

        signalName: "getRemainsSeconds"
    }

    name: "ProgressEstimate"
}
