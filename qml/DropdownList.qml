// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Fusion as Fusion

/// The open list of a Dropdown.
ListView {
    id: list

    required property Properties prop
    /// The row of the current choice; currentIndex is the row under the mouse.
    property int chosenIndex: -1

    implicitHeight: list.contentHeight
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    Fusion.ScrollBar.vertical: Fusion.ScrollBar {
    }
}
