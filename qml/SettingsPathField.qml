// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// A folder that is typed or chosen in a dialog.
ColumnLayout {
    id: field

    required property Properties prop
    required property string label
    /// The settings key of the folder.
    required property string type
    property alias value: input.text

    signal chooseNewPath(string type, string value)

    /// Shows a folder from its beginning.
    function show(path: string) {
        input.text = path;
        input.cursorPosition = 0;
    }

    spacing: 3 * field.prop.scf

    Text {
        Layout.fillWidth: true
        text: field.label
        textFormat: Text.PlainText
        font: field.prop.fonts.font9_12
        color: Colors.text
    }

    RowLayout {
        spacing: 6 * field.prop.scf

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 29 * field.prop.scf
            radius: 3 * field.prop.scf
            color: Colors.field
            border.color: input.activeFocus ? Colors.accent : Colors.fieldFrame
            border.width: input.activeFocus ? Math.max(2, 2 * field.prop.scf) : 1

            TextInput {
                id: input

                anchors.fill: parent
                anchors.leftMargin: 8 * field.prop.scf
                anchors.rightMargin: 8 * field.prop.scf
                activeFocusOnTab: true
                font: field.prop.fonts.font9_12
                color: Colors.textOnLight
                selectionColor: Colors.accent
                selectedTextColor: Colors.textOnLight
                selectByMouse: true
                clip: true
                verticalAlignment: Text.AlignVCenter
                Accessible.role: Accessible.EditableText
                Accessible.name: field.label

                Tip {
                    prop: field.prop
                    text: input.text
                    visible: hover.hovered && !input.activeFocus && input.contentWidth > input.width
                }

                HoverHandler {
                    id: hover

                    cursorShape: Qt.IBeamCursor
                }
            }

            Text {
                anchors.fill: input
                visible: input.text === "" && !input.activeFocus
                text: qsTr("This folder is not available")
                textFormat: Text.PlainText
                font: field.prop.fonts.font9_12
                color: Colors.textOnLightDisabled
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
            }
        }

        TextBtn {
            Layout.preferredWidth: 29 * field.prop.scf
            Layout.preferredHeight: 29 * field.prop.scf
            prop: field.prop
            text: "..."
            leftPadding: 0
            rightPadding: 0
            Accessible.name: qsTr("Choose a folder: ") + field.label
            onClicked: field.chooseNewPath(field.type, field.value)
        }
    }
}
