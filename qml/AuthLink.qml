// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A link in the middle of its column.
TextClicked {
    id: link

    anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
    opacity: link.enabled ? 1 : 0.5
}
