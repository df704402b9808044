// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// What all views share in looks, at the scale of one window.
QtObject {
    id: theme

    property real scf: 1
    readonly property string name: Qt.platform.os === "windows" ? "win" : Qt.platform.os === "osx" ? "mac" : "linux"
    readonly property string defaultFont: "Arial"
    readonly property Fonts fonts: Fonts {
        family: theme.defaultFont
        scf: theme.scf
    }
}
