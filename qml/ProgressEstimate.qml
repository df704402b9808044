// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The progress of a job at the service, interpolated between its answers. The timers only call the ticks.
Item {
    id: estimate

    /// Whether the estimate is visible.
    required property bool active

    property int seconds: -1
    property int totalSeconds: -1
    property int additionalCalculating: 0

    /// One second's share of the whole, in percent to two decimals.
    readonly property real step: estimate.totalSeconds > 0 ? Math.round(1 / estimate.totalSeconds * 10000) / 100 : 0
    readonly property real percent: estimate.totalSeconds > 0 ? Math.min(Math.max((estimate.totalSeconds - estimate.seconds) / estimate.totalSeconds * 100 + estimate.additionalCalculating * estimate.step / 3, 0), 100) : 0
    readonly property int pollingInterval: pollingTimer.interval
    readonly property bool counting: secondTimer.running
    readonly property bool polling: pollingTimer.running

    signal getRemainsSeconds

    function resetData() {
        estimate.seconds = -1;
        estimate.totalSeconds = -1;
        estimate.additionalCalculating = 0;
        pollingTimer.interval = estimate.intervalFor(0);
    }

    /// The polling interval in milliseconds; shorter towards the end.
    function intervalFor(remaining: int): int {
        return remaining > 100 ? 60000 : remaining > 40 ? 20000 : remaining > 20 ? 5000 : 2000;
    }

    /// Takes an answer of the service, in seconds. Call it for every answer, also an unchanged one.
    function takeAnswer(remaining: int) {
        if (!estimate.active)
            return;
        // When the first answer took longer than a second, the countdown has already ended.
        if (estimate.seconds === -1 || estimate.totalSeconds === -1)
            estimate.totalSeconds = remaining;
        estimate.seconds = remaining;
        if (remaining === -1)
            return;
        secondTimer.restart();
        pollingTimer.interval = estimate.intervalFor(remaining);
        pollingTimer.restart();
    }

    function tickSecond() {
        estimate.additionalCalculating = 0;
        estimate.seconds = Math.max(estimate.seconds - 1, 1);
        if (estimate.seconds === 1)
            secondTimer.stop();
        else
            fractionTimer.restart();
    }

    function tickFraction() {
        if (estimate.percent >= 100) {
            estimate.additionalCalculating = 0;
            return;
        }
        ++estimate.additionalCalculating;
        if (estimate.additionalCalculating < 2)
            fractionTimer.restart();
    }

    function tickPolling() {
        if (estimate.active)
            estimate.getRemainsSeconds();
    }

    onActiveChanged: {
        if (!estimate.active)
            fractionTimer.stop();
    }

    Timer {
        id: secondTimer

        interval: 996
        repeat: true
        running: estimate.active
        onTriggered: estimate.tickSecond()
    }

    Timer {
        id: fractionTimer

        interval: 330
        onTriggered: estimate.tickFraction()
    }

    Timer {
        id: pollingTimer

        interval: 2000
        running: estimate.active
        onTriggered: estimate.tickPolling()
    }
}
