// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

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
    /// Runs steps such as "answer 50, second".
    function run(steps: string) {
        for (const step of steps.split(", ")) {
            const words = step.split(" ");
            if (words[0] === "answer")
                test.answer(parseInt(words[1]));
            else if (words[0] === "active")
                test.estimate.active = words[1] === "true";
            else
                test.estimate[words[0]]();
        }
    }
    function test_states_data(): var {
        const table = States.table("steps", "seconds", "total", "percent");
        table.add("nothing yet", "active true", -1, -1, 0);
        table.add("first answer", "answer 50", 50, 50, 0);
        table.add("a second", "answer 50, tickSecond", 49, 50, 2);
        table.add("a third of the next", "answer 50, tickSecond, tickFraction", 49, 50, 2 + 2 / 3);
        table.add("two thirds", "answer 50, tickSecond, tickFraction, tickFraction", 49, 50, 2 + 4 / 3);
        table.add("thirds start again", "answer 50, tickSecond, tickFraction, tickSecond", 48, 50, 4);
        table.add("steps are rounded", "answer 3, tickSecond, tickFraction", 2, 3, 100 / 3 + 33.33 / 3);
        table.add("later answer keeps the total", "answer 50, tickSecond, answer 10", 10, 50, 80);
        table.add("larger answer", "answer 50, tickSecond, answer 60", 60, 50, 0);
        table.add("the last second waits", "answer 2, tickSecond, tickSecond, tickSecond", 1, 2, 50);
        table.add("late first answer", "tickSecond, answer 40", 40, 40, 0);
        table.add("ready", "answer 2, tickSecond, tickFraction, tickFraction, answer 0", 0, 2, 100);
        table.add("no thirds at the end", "answer 5, answer 0, tickFraction", 0, 5, 100);
        table.add("unknown", "answer 9, answer -1", -1, 9, 100);
        table.add("unwatched", "active false, answer 9", -1, -1, 0);
        table.add("reset", "answer 9, tickSecond, tickFraction, resetData", -1, -1, 0);
        return table.rows;
    }
    function test_states(data: var) {
        test.run(data.steps);
        compare(test.estimate.seconds, data.seconds);
        compare(test.estimate.totalSeconds, data.total);
        fuzzyCompare(test.estimate.percent, data.percent, 0.001);
    }
    function test_polling() {
        for (const [remaining, interval] of [[1, 2000], [20, 2000], [21, 5000], [40, 5000], [41, 20000], [100, 20000], [101, 60000], [4000, 60000]]) {
            polls.clear();
            test.run("active true, answer " + remaining);
            compare(test.estimate.pollingInterval, interval);
            verify(test.estimate.polling);
            test.run("tickPolling, active false, tickPolling");
            compare(polls.count, 1);
            verify(!test.estimate.polling);
        }
    }
    function test_countdownStopsAtOne() {
        for (const [step, counts] of [["answer 2", true], ["tickSecond", false], ["answer 7", true], ["active false", false]]) {
            test.run(step);
            compare(test.estimate.counting, counts);
        }
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
