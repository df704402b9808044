// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Covers a view and swallows its clicks and keys while the view waits for something.
Rectangle {
    id: hover

    required property Properties prop
    /// Had the keyboard before, and gets it back.
    property Item covered: null

    function takeKeyboard() {
        hover.covered = hover.Window.activeFocusItem;
        hover.forceActiveFocus();
    }
    function giveKeyboardBack() {
        // Somebody else may have taken it already.
        if (hover.activeFocus && hover.covered)
            hover.covered.forceActiveFocus();
        hover.focus = false;
    }

    anchors.fill: parent
    color: "#cc000000"
    Keys.onPressed: event => event.accepted = true
    Component.onCompleted: {
        if (hover.visible)
            hover.takeKeyboard();
    }
    onVisibleChanged: {
        if (hover.visible)
            hover.takeKeyboard();
        else
            hover.giveKeyboardBack();
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: qsTr("Loading...")

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        Accessible.ignored: true
        onClicked: console.info("Block click")
        onWheel: wheel => wheel.accepted = true
    }

    LateView {
        anchors.centerIn: parent
        wanted: hover.prop.isDrawn
        view: "LoadingBox.qml"
        needs: ({
                "prop": hover.prop
            })
    }
}
