// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// All instruments, one of which the user picks.
Column {
    id: area

    required property WindowView view
    readonly property Properties prop: area.view.prop

    signal picked(string instrument)

    spacing: 15 * area.prop.scf

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: area.spacing

        InstrumentBtn {
            view: area.view
            instrument: "guitar"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            view: area.view
            instrument: "vocals"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            view: area.view
            instrument: "piano"
            onClicked: area.picked(instrument)
        }
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: area.spacing

        InstrumentBtn {
            view: area.view
            instrument: "bass"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            view: area.view
            instrument: "drums"
            onClicked: area.picked(instrument)
        }
    }
}
