// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// What a button tells about itself while the mouse rests on it.
Item {
    id: tip

    required property Btn btn

    T.ToolTip.text: tip.btn.tooltip
    T.ToolTip.visible: tip.btn.hovered && tip.btn.tooltip !== ""
    T.ToolTip.delay: 600
}
