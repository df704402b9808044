// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// The way home, the file's name, and the way to another file.
RowLayout {
    id: header

    required property Properties prop
    required property Functions mainFunctions
    required property Background background
    required property int recalc
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
        prop: header.prop
        mainFunctions: header.mainFunctions
        background: header.background
        recalc: header.recalc
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
