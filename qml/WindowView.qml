// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "OS" as OS

/// The base of all windows' views: the theme at the window's scale, and the background. Parts that look transparent need the
/// view itself.
Item {
    id: base

    property double scf: 1
    /// Incremented after each layout of the view: a panel can match the background only then.
    property int gradiendVar: 0
    readonly property alias prop: prop
    readonly property alias mainFunctions: mainFunctions
    readonly property alias background: background

    signal loaded

    /// The colour of the background behind an item of this view.
    function colorBehind(item: Item, offset: real): color {
        return mainFunctions.interpolateColor(background, item, offset, base.gradiendVar);
    }

    onLoaded: gradientTimer.restart()
    onScfChanged: gradientTimer.restart()

    OS.CurrentTheme {
        id: theme

        scf: base.scf
    }

    Properties {
        id: prop

        theme: theme
    }

    Functions {
        id: mainFunctions
    }

    Background {
        id: background
    }

    Timer {
        id: gradientTimer

        interval: 20
        onTriggered: ++base.gradiendVar
    }
}
