// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// All instruments, one of which the user picks.
Column {
    id: area

    required property Properties prop
    required property Functions mainFunctions

    signal picked(string instrument)

    spacing: 15 * area.prop.scf

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: area.spacing

        InstrumentBtn {
            prop: area.prop
            mainFunctions: area.mainFunctions
            instrument: "guitar"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            prop: area.prop
            mainFunctions: area.mainFunctions
            instrument: "vocals"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            prop: area.prop
            mainFunctions: area.mainFunctions
            instrument: "piano"
            onClicked: area.picked(instrument)
        }
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: area.spacing

        InstrumentBtn {
            prop: area.prop
            mainFunctions: area.mainFunctions
            instrument: "bass"
            onClicked: area.picked(instrument)
        }

        InstrumentBtn {
            prop: area.prop
            mainFunctions: area.mainFunctions
            instrument: "drums"
            onClicked: area.picked(instrument)
        }
    }
}
