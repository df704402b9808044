// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// How far the service has come with a file, guessed between its answers. The timers do nothing but call the ticks.
Item {
    id: estimate

    /// The service's last answer, in seconds.
    required property int remainingProcessingTime
    /// Whether the estimate is being watched.
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

    /// The nearer the end, the more often the service is asked; in milliseconds.
    function intervalFor(remaining: int): int {
        return remaining > 100 ? 60000 : remaining > 40 ? 20000 : remaining > 20 ? 5000 : 2000;
    }

    function takeAnswer(remaining: int) {
        // A first answer that took longer than a second finds the countdown at its end already.
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
        if (!estimate.active)
            return;
        // An answer equal to the last one changes nothing here, and yet the service has to be asked again.
        pollingTimer.restart();
        estimate.getRemainsSeconds();
    }

    onRemainingProcessingTimeChanged: {
        if (estimate.active)
            estimate.takeAnswer(estimate.remainingProcessingTime);
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
