// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// One setting that is chosen from a list. A stored value that is not in the list stays as it is until the user chooses.
ColumnLayout {
    id: choice

    required property Properties prop
    required property string label
    required property list<string> entries
    required property real boxWidth
    /// What is stored for the first entry; empty when it is stored as it is shown.
    property string firstValue
    /// The entry that shows for a stored value that is not in the list.
    property int unknownIndex: -1
    /// What the settings hold while the box cannot show it.
    property string unknownValue
    /// Whether a choice may ask something of the user: then keys that would turn the closed box open its list instead.
    property bool mayAsk: false
    readonly property string value: {
        if (choice.unknownValue !== "" || box.currentIndex < 0)
            return choice.unknownValue;
        return box.currentIndex === 0 && choice.firstValue !== "" ? choice.firstValue : choice.entries[box.currentIndex];
    }

    /// The user has chosen that entry.
    signal chosen(string text)

    function show(stored: string) {
        const index = choice.entries.indexOf(stored);
        choice.unknownValue = index < 0 && stored !== choice.firstValue ? stored : "";
        box.currentIndex = index < 0 ? choice.unknownIndex : index;
    }

    function reset() {
        choice.unknownValue = "";
        box.currentIndex = 0;
    }

    spacing: 3 * choice.prop.scf

    Text {
        text: choice.label
        textFormat: Text.PlainText
        font: choice.prop.fonts.font9_12
        color: Colors.text
    }

    Dropdown {
        id: box

        Layout.preferredWidth: choice.boxWidth * choice.prop.scf
        prop: choice.prop
        model: choice.entries
        Accessible.name: choice.label
        // Space opens the list by itself.
        Keys.onPressed: event => {
            event.accepted = choice.mayAsk && !box.popup.visible && (event.text > " " || [Qt.Key_Up, Qt.Key_Down, Qt.Key_Home, Qt.Key_End].includes(event.key));
            if (event.accepted)
                box.popup.open();
        }
        onActivated: {
            choice.unknownValue = "";
            // The answer may be a dialog, behind which the list would stay open.
            box.popup.close();
            choice.chosen(box.currentText);
        }
    }
}
