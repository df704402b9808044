// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A button drawn by a picture. It is for the mouse alone: it never takes the keyboard focus.
/// Not one of Qt's controls, whose module takes longer to load than the rest of the main window.
Item {
    id: btn

    required property Properties prop
    property string iconName
    property real iconWidth: 10
    property real iconHeight: btn.iconWidth
    property string tooltip
    property bool isCustomHovered: false
    /// A second picture over the first one, such as "/icons/audio.svg".
    property string additionalIcon
    property string label
    property font labelFont: btn.prop.fonts.font10_13
    readonly property bool hovered: btn.enabled && hover.hovered

    signal clicked

    implicitWidth: btn.iconWidth
    implicitHeight: btn.iconHeight
    Accessible.role: Accessible.Button
    Accessible.name: btn.tooltip !== "" ? btn.tooltip : btn.label !== "" ? btn.label.replace("\n", " ") : btn.iconName
    Accessible.onPressAction: {
        if (btn.enabled)
            btn.clicked();
    }

    states: [
        State {
            name: "disabled"
            when: !btn.enabled
        },
        State {
            name: "pressed"
            when: area.pressed && area.containsMouse
        },
        State {
            name: "hovered"
            when: btn.hovered || btn.isCustomHovered
        }
    ]

    Icon {
        anchors.centerIn: parent
        width: btn.iconWidth
        height: btn.iconHeight
        name: btn.prop.isDrawn ? btn.iconName : ""
        state: btn.state
    }

    LateView {
        anchors.fill: parent
        wanted: btn.additionalIcon !== "" || btn.label !== ""
        view: "BtnLabel.qml"
        needs: ({
                "btn": btn
            })
    }

    LateView {
        asynchronous: true
        wanted: btn.hovered && btn.tooltip !== ""
        view: "BtnTip.qml"
        needs: ({
                "btn": btn
            })
    }

    HoverHandler {
        id: hover
    }

    MouseArea {
        id: area

        anchors.fill: parent
        Accessible.ignored: true
        onClicked: btn.clicked()
    }
}
