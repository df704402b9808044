// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// A button of a row in the archive: the small picture named by icon.name before its text.
TextBtn {
    id: btn

    readonly property real leftM: 33 * btn.prop.scf

    implicitWidth: 90 * btn.prop.scf
    implicitHeight: 26 * btn.prop.scf
    font: btn.prop.fonts.font10_13
    labelShift: btn.leftM - btn.leftPadding
    icon.width: 16 * btn.prop.scf
    icon.height: 16 * btn.prop.scf

    Image {
        x: btn.leftM - 5 * btn.prop.scf - width
        anchors.verticalCenter: parent.verticalCenter
        width: btn.icon.width
        height: btn.icon.height
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
        source: btn.icon.name === "" ? "" : PictureFiles.existing(Qt.resolvedUrl("/icons/" + btn.icon.name + ".svg"))
    }
}
