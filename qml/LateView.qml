// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A part of a view that is made when it is first wanted, so that the view itself is there sooner.
Loader {
    id: late

    required property url view
    /// What the part needs from its start.
    required property var needs
    /// The part stays when it is no longer wanted.
    property bool wanted: false

    property bool isReady: false
    readonly property bool isOverdue: late.isReady && late.wanted

    function make() {
        if (late.status === Loader.Null)
            late.setSource(late.view, late.needs);
    }

    // Not before everything is set that the part needs.
    Component.onCompleted: late.isReady = true
    onIsOverdueChanged: {
        if (late.isOverdue)
            late.make();
    }
}
