// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "helpers.js" as Helpers

/// Small functions that views share.
QtObject {
    id: functions

    /// "TEKO" and the version; in a development run the mode as well.
    function setApplicationWindowTitle(): string {
        const version = Helpers.appVersion();
        const mode = Helpers.devMode();
        const title = "TEKO " + (version === undefined ? "1" : version);
        return mode === undefined ? title : title + ": | " + mode;
    }

    /// The colour of the background behind an item, so that a panel looks transparent over it.
    /// Positions are not observed: change recalc to re-evaluate a binding.
    function interpolateColor(bg, item, offset, recalc) {
        return Helpers.backgroundColor(bg, item.mapToItem(null, 0, 0).y + offset);
    }

    function capitalizeFirstLetter(text: string): string {
        const first = text.charAt(0);
        const rest = text.slice(1);
        return first.toUpperCase() + rest.toLowerCase();
    }

    /// Minutes and seconds; whole hours are dropped.
    function formatTime(s: int): string {
        if (s <= 0)
            return "0:00";
        const minutes = Math.floor((s % 3600) / 60);
        return minutes + ":" + String(s % 60).padStart(2, "0");
    }
}
