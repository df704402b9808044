// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Home button and heading of the settings window.
Item {
    id: header

    required property WindowView view
    readonly property Properties prop: header.view.prop

    signal cancel

    Btn {
        anchors.verticalCenter: parent.verticalCenter
        prop: header.prop
        iconName: "home"
        iconWidth: 35 * header.prop.scf
        tooltip: qsTr("Home")
        onClicked: header.cancel()
    }

    SectionLabel {
        anchors.centerIn: parent
        width: implicitWidth
        height: implicitHeight
        view: header.view
        text: qsTr("OPTION SETTINGS")
    }
}
