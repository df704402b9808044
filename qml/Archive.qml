// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Controls.Fusion as Fusion
import QtQuick.Layouts
import qml

/// The archive window: lists earlier results.
WindowView {
    id: root

    property bool isProcessing: true

    signal updateFiles(var data)
    signal changeButtons(int idx, string i, string m)
    signal cancel
    signal unlockFullAccess
    signal openFolder
    signal getFullFile(int id)
    signal changedFormat(int id, string format)
    signal operateFile(int id, bool isMix, string format)

    onUpdateFiles: data => files.setRows(data)
    onChangeButtons: (idx, i, m) => {
        files.setValue(idx, "btnInstrument", i);
        files.setValue(idx, "btnMix", m);
    }

    // Destroy the rows before the theme that their bindings use.
    Component.onDestruction: list.model = null

    ArchiveModel {
        id: files
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 15 * root.scf
        spacing: 12 * root.scf

        Item {
            Layout.fillWidth: true
            Layout.preferredHeight: heading.implicitHeight

            Btn {
                anchors.verticalCenter: parent.verticalCenter
                prop: root.prop
                iconName: "home"
                iconWidth: 28 * root.scf
                tooltip: qsTr("Home")
                onClicked: root.cancel()
            }

            SectionLabel {
                id: heading

                anchors.centerIn: parent
                view: root
                text: qsTr("LIST OF THE PROCEED FILES")
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.fillHeight: true
            radius: 10 * root.scf
            gradient: Gradient {
                GradientStop {
                    position: 0
                    color: Colors.frameTop
                }
                GradientStop {
                    position: 1
                    color: Colors.frameBottom
                }
            }

            Rectangle {
                anchors.fill: parent
                anchors.margins: Math.max(1, root.scf)
                radius: 9 * root.scf
                color: Colors.list
            }

            Text {
                anchors.centerIn: parent
                width: parent.width - 40 * root.scf
                visible: files.count === 0 && !root.isProcessing
                text: qsTr("No processed files for last 30 days")
                textFormat: Text.PlainText
                font: root.prop.fonts.font12_16
                color: Colors.listText
                wrapMode: Text.WordWrap
                horizontalAlignment: Text.AlignHCenter
            }

            ListView {
                id: list

                anchors.fill: parent
                anchors.margins: 6 * root.scf
                clip: true
                activeFocusOnTab: true
                boundsBehavior: Flickable.StopAtBounds
                highlightMoveDuration: 0
                model: files
                Accessible.role: Accessible.List
                Accessible.name: heading.text
                Fusion.ScrollBar.vertical: Fusion.ScrollBar {
                }

                // The delegate uses ids of this file.
                // qmllint disable unqualified
                delegate: ArchiveRow {
                    id: row

                    width: list.width
                    look: root.prop
                    functions: root.mainFunctions
                    onActiveFocusChanged: {
                        if (row.activeFocus)
                            list.currentIndex = row.index;
                    }
                    onUnlockFullAccess: {
                        root.cancel();
                        root.unlockFullAccess();
                    }
                    onGetFullFile: root.getFullFile(row.index)
                    onFormatChosen: chosen => {
                        files.setValue(row.index, "chosen", chosen);
                        root.changedFormat(row.index, chosen.toLowerCase());
                    }
                    onOperateFile: isMix => root.operateFile(row.index, isMix, row.format.toLowerCase())
                }
                // qmllint enable unqualified
            }
        }

        RowLayout {
            Layout.fillWidth: true

            TextBtn {
                Layout.preferredWidth: 160 * root.scf
                Layout.preferredHeight: 40 * root.scf
                prop: root.prop
                text: qsTr("Open Saved Folder")
                onClicked: root.openFolder()
            }

            Item {
                Layout.fillWidth: true
            }

            TextBtn {
                Layout.preferredWidth: 140 * root.scf
                Layout.preferredHeight: 40 * root.scf
                prop: root.prop
                text: qsTr("CLOSE")
                onClicked: root.cancel()
            }
        }
    }

    LoadingHover {
        visible: root.isProcessing
        prop: root.prop
    }
}
