// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// What an active subscription is worth.
Item {
    id: pane

    required property Properties prop
    property string type
    property string version
    property string period
    property string added

    readonly property real scf: pane.prop.scf

    Text {
        id: title

        width: parent.width
        text: qsTr("Your subscription is active: files are processed in full.")
        textFormat: Text.PlainText
        font: pane.prop.fonts.font11_15
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 4
        color: Colors.text
        elide: Text.ElideRight
    }

    Grid {
        id: lines

        anchors {
            top: title.bottom
            topMargin: 10 * pane.scf
            left: parent.left
            right: parent.right
        }
        columns: 2
        columnSpacing: 12 * pane.scf
        rowSpacing: 6 * pane.scf

        SubscriptionLabel {
            width: (pane.width - lines.columnSpacing) / 2
            prop: pane.prop
            label: qsTr("Type")
            value: pane.type
        }

        SubscriptionLabel {
            width: (pane.width - lines.columnSpacing) / 2
            prop: pane.prop
            label: qsTr("Version")
            value: pane.version
        }

        SubscriptionLabel {
            width: (pane.width - lines.columnSpacing) / 2
            prop: pane.prop
            label: qsTr("Period")
            value: pane.period
        }

        SubscriptionLabel {
            width: (pane.width - lines.columnSpacing) / 2
            prop: pane.prop
            label: qsTr("Since")
            value: pane.added
        }
    }
}
