// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml
import QtQuick.Layouts

/// One result in the archive's list, with the ways to get it.
FocusScope {
    id: row

    // Not named like the ids of the view, which would be hidden from the one who sets them.
    required property Properties look
    required property Functions functions
    required property int index
    required property string name
    required property string deleted
    required property string instrument
    required property string extension
    required property string demoFile
    required property string demoUser
    required property string btnInstrument
    required property string btnMix
    required property bool isVideo
    /// Files may have this name; without that nothing is offered.
    required property bool isUsable
    /// The format that was chosen in this row; empty before.
    required property string chosen

    readonly property real scf: row.look.scf
    readonly property bool isDemo: row.demoFile !== "no"
    /// Which take it is: files of both may have the same name.
    readonly property string takeText: row.isDemo ? qsTr("demo, the first 30 seconds") : qsTr("whole file")
    readonly property var formats: row.isVideo ? Vocabulary.allFormats : Vocabulary.audioFormats
    readonly property int formatIndex: Math.max(0, row.formats.indexOf(row.chosen !== "" ? row.chosen : row.extension.toUpperCase()))
    readonly property string format: row.formats[row.formatIndex]

    signal unlockFullAccess
    signal getFullFile
    signal formatChosen(string format)
    signal operateFile(bool isMix)

    height: 40 * row.scf
    Accessible.role: Accessible.ListItem
    Accessible.name: row.name + ", " + row.takeText

    Rectangle {
        anchors.fill: parent
        color: row.index % 2 === 0 ? Colors.rowEven : Colors.rowOdd
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 8 * row.scf
        anchors.rightMargin: 12 * row.scf
        spacing: 5 * row.scf

        Column {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter

            HoverHandler {
                id: titleHover
            }

            Tip {
                prop: row.look
                text: row.name + "\n" + row.takeText
                visible: titleHover.hovered
            }

            Text {
                width: parent.width
                text: row.name
                textFormat: Text.PlainText
                font: row.look.fonts.font10_13
                color: Colors.text
                elide: Text.ElideRight
                maximumLineCount: 1
            }

            Text {
                width: parent.width
                text: row.isUsable ? qsTr("Files available until ") + row.deleted : qsTr("No file can have this name.")
                textFormat: Text.PlainText
                font.family: row.look.defaultFont
                font.pointSize: row.look.fonts.font8_10.pointSize
                font.italic: true
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: Math.max(1, Math.round(6 * row.scf))
                color: row.isUsable ? Colors.listNote : Colors.listWarning
                elide: Text.ElideRight
                maximumLineCount: 1
            }
        }

        ArchiveBtn {
            Layout.preferredWidth: 150 * row.scf
            visible: row.isUsable && row.isDemo && row.demoUser !== "no"
            prop: row.look
            icon.name: "lock"
            text: qsTr("Unlock Full Access")
            onClicked: row.unlockFullAccess()
        }

        ArchiveBtn {
            Layout.preferredWidth: 140 * row.scf
            visible: row.isUsable && row.isDemo && row.demoUser === "no"
            prop: row.look
            icon.name: "process"
            text: qsTr("Process Full File")
            Accessible.description: row.name
            onClicked: row.getFullFile()
        }

        Dropdown {
            id: formatBox

            Layout.preferredWidth: 65 * row.scf
            Layout.preferredHeight: 24 * row.scf
            visible: row.isUsable && !row.isDemo
            prop: row.look
            font: row.look.fonts.font8_10
            model: row.formats
            currentIndex: row.formatIndex
            Accessible.name: qsTr("Output Format")
            Accessible.description: row.name
            onActivated: row.formatChosen(formatBox.currentText)
        }

        ArchiveBtn {
            Layout.preferredWidth: 85 * row.scf
            visible: row.isUsable
            prop: row.look
            icon.name: row.btnInstrument
            text: row.functions.capitalizeFirstLetter(row.instrument)
            Accessible.description: (row.btnInstrument === "play" ? qsTr("Play") : qsTr("Download")) + " " + row.name
            onClicked: row.operateFile(false)
        }

        ArchiveBtn {
            Layout.preferredWidth: 70 * row.scf
            visible: row.isUsable
            prop: row.look
            icon.name: row.btnMix
            text: qsTr("Mix")
            Accessible.description: (row.btnMix === "play" ? qsTr("Play") : qsTr("Download")) + " " + row.name
            onClicked: row.operateFile(true)
        }
    }
}
