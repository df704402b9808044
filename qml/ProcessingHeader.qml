// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// Home button, file name, and a button to select another file.
RowLayout {
    id: header

    required property WindowView view
    readonly property Properties prop: header.view.prop
    property string fileName
    property bool active: true

    signal close
    signal openAnotherFile

    spacing: 10 * header.prop.scf

    Btn {
        prop: header.prop
        iconName: "home"
        iconWidth: 35 * header.prop.scf
        tooltip: qsTr("Home")
        enabled: header.active
        onClicked: header.close()
    }

    FileNameField {
        Layout.fillWidth: true
        view: header.view
        fileName: header.fileName
    }

    Btn {
        prop: header.prop
        iconName: "Select File Small"
        iconWidth: 35 * header.prop.scf
        tooltip: qsTr("Select Another File")
        enabled: header.active
        onClicked: header.openAnotherFile()
    }
}
