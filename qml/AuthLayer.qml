// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Where a signed-out user signs in. Nothing is shown: everyone counts as signed in.
Item {
    anchors.fill: parent
    visible: false
}
