// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A part of a view that is created on first use, so that the view loads faster.
Loader {
    id: loader

    required property url view
    required property var initialProperties
    property bool wanted: false

    function load() {
        if (loader.status === Loader.Null)
            loader.setSource(loader.view, loader.initialProperties);
    }

    visible: loader.wanted
    Component.onCompleted: if (loader.wanted)
        loader.load()
    onWantedChanged: if (loader.wanted)
        loader.load()
}
