// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0

// What the compiler and the linter of the views cannot make out, and leave to be interpreted.

/** What the program put into the root context under these names, or undefined. */
function appVersion() {
    return typeof APP_VER === "undefined" ? undefined : APP_VER;
}

function devMode() {
    return typeof DEV_MODE === "undefined" ? undefined : DEV_MODE;
}

/** The rows of a combo box; their type is private to Qt. */
function rows(comboBox) {
    return comboBox.delegateModel;
}

/** The colour of a vertical gradient at a height of the scene. */
function backgroundColor(bg, y) {
    if (!bg || bg.height <= 0)
        return "#ffffff";
    const fraction = Math.min(Math.max((y - bg.y) / bg.height, 0), 1);
    const mix = (from, to) => from + (to - from) * fraction;
    return Qt.rgba(mix(bg.from.r, bg.to.r), mix(bg.from.g, bg.to.g), mix(bg.from.b, bg.to.b), mix(bg.from.a, bg.to.a));
}
