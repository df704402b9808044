// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The button that picks one instrument.
Btn {
    id: btn

    required property string instrument
    required property WindowView view

    prop: btn.view.prop
    iconName: btn.instrument
    iconWidth: 130 * btn.prop.scf
    tooltip: btn.view.mainFunctions.capitalizeFirstLetter(btn.instrument)
}
