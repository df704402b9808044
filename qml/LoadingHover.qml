// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Covers a view and blocks mouse and keyboard while the view waits. It becomes visible only after a short delay.
Rectangle {
    id: hover

    required property Properties prop
    /// The item that had the focus before and gets it back.
    property Item covered: null

    function takeKeyboard() {
        hover.covered = hover.Window.activeFocusItem;
        hover.forceActiveFocus();
    }
    function giveKeyboardBack() {
        // Another item may have taken it already.
        if (hover.activeFocus && hover.covered)
            hover.covered.forceActiveFocus();
        hover.focus = false;
    }
    function appear() {
        hover.takeKeyboard();
        appearing.restart();
    }

    anchors.fill: parent
    color: Colors.cover
    Keys.onPressed: event => event.accepted = true
    Component.onCompleted: {
        if (hover.visible)
            hover.appear();
    }
    onVisibleChanged: {
        if (hover.visible)
            hover.appear();
        else
            hover.giveKeyboardBack();
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: qsTr("Loading...")

    SequentialAnimation {
        id: appearing

        PropertyAction {
            target: hover
            property: "opacity"
            value: 0
        }
        PauseAnimation {
            duration: 150
        }
        PropertyAction {
            target: hover
            property: "opacity"
            value: 1
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        Accessible.ignored: true
        onClicked: console.info("Block click")
        onWheel: wheel => wheel.accepted = true
    }

    Column {
        anchors.centerIn: parent
        spacing: 12 * hover.prop.scf

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 200 * hover.prop.scf
            height: 50 * hover.prop.scf
            radius: 10 * hover.prop.scf
            color: Colors.menu
            border.color: Colors.frameBottom
            border.width: hover.prop.lineWidth

            Text {
                anchors.centerIn: parent
                text: qsTr("Loading...")
                textFormat: Text.PlainText
                font: hover.prop.fonts.font16_21
                color: Colors.text
            }
        }

        ProgressBar {
            anchors.horizontalCenter: parent.horizontalCenter
            prop: hover.prop
            percent: 100
        }
    }
}
