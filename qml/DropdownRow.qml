// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Templates as T

/// One row of the open list of a Dropdown.
T.ItemDelegate {
    id: row

    required property string modelData
    required property int index
    readonly property DropdownList list: ListView.view as DropdownList
    readonly property real scf: row.list ? row.list.prop.scf : 1

    width: ListView.view ? ListView.view.width : 0
    height: 24 * row.scf
    highlighted: row.ListView.isCurrentItem
    hoverEnabled: true
    font: row.list ? row.list.prop.fonts.font9_12 : Qt.font({})
    // Ignore the second click of a double click: another item may be under the mouse by then.
    onDoubleClicked: {
    }
    Accessible.role: Accessible.ListItem
    Accessible.name: row.modelData

    contentItem: Text {
        leftPadding: 8 * row.scf
        text: row.modelData
        textFormat: Text.PlainText
        font.family: row.font.family
        font.pointSize: row.font.pointSize
        font.weight: row.list && row.list.chosenIndex === row.index ? Font.DemiBold : Font.Normal
        color: Colors.textOnLight
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        color: row.highlighted ? Colors.accent : "transparent"
    }
}
