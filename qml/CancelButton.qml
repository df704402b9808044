// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

TextBtn {
    id: btn

    implicitWidth: 150 * btn.prop.scf
    implicitHeight: 44 * btn.prop.scf
    text: qsTr("CANCEL")
}
