// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The buttons of the settings window. Positioned without a layout: layouts of Qt 6.4 keep the earlier size of some items
/// when the scale changes while the window is hidden.
Item {
    id: row

    required property Properties prop

    signal save
    signal cancel
    signal defaultSettings

    TextBtn {
        id: okButton

        width: 100 * row.prop.scf
        height: parent.height
        prop: row.prop
        text: qsTr("OK")
        onClicked: row.save()
    }

    TextBtn {
        anchors.left: okButton.right
        anchors.leftMargin: 10 * row.prop.scf
        width: 100 * row.prop.scf
        height: parent.height
        prop: row.prop
        text: qsTr("CANCEL")
        onClicked: row.cancel()
    }

    TextBtn {
        anchors.right: parent.right
        width: 190 * row.prop.scf
        height: parent.height
        prop: row.prop
        text: qsTr("Restore Default Settings")
        onClicked: row.defaultSettings()
    }
}
