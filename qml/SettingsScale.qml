// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Layouts

/// The choice of the interface scale.
GroupBox {
    id: section

    readonly property int firstPercent: 60
    readonly property int lastPercent: 150

    /// The stored scale; that of the window is smaller where the screen is.
    property real stored: 1

    signal saveScf(real scf)

    /// Discards a choice that was not applied.
    function reset() {
        box.currentIndex = box.shownIndex;
    }

    function entries(): list<string> {
        const texts = [];
        for (let percent = section.firstPercent; percent <= section.lastPercent; ++percent)
            texts.push((percent / 100).toFixed(2));
        return texts;
    }

    label: qsTr("Gui Resizing")

    ColumnLayout {
        anchors.fill: parent

        Text {
            Layout.fillWidth: true
            text: qsTr("By Default it is set to 1.0. Selecting a larger number will\nincrease the size of the controls you see on your screen.")
            textFormat: Text.PlainText
            font: section.prop.fonts.font9_12
            color: Colors.text
        }

        RowLayout {
            spacing: 10 * section.prop.scf

            Dropdown {
                id: box

                readonly property int shownIndex: Math.min(Math.max(Math.round(section.stored * 100), section.firstPercent), section.lastPercent) - section.firstPercent

                Layout.preferredWidth: 70 * section.prop.scf
                prop: section.prop
                model: section.entries()
                Accessible.name: section.label
                onShownIndexChanged: section.reset()
                Component.onCompleted: section.reset()
            }

            TextBtn {
                Layout.preferredWidth: 100 * section.prop.scf
                Layout.preferredHeight: 30 * section.prop.scf
                prop: section.prop
                text: qsTr("OK")
                Accessible.name: qsTr("Apply the size")
                onClicked: section.saveScf(parseFloat(box.currentText))
            }
        }
    }
}
