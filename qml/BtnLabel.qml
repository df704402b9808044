// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// What a few buttons show over their picture: a second picture and a text.
Item {
    id: face

    required property Btn btn

    Image {
        // In the free corner of the picture "open in".
        x: parent.width * 0.31
        y: parent.height * 0.29
        width: parent.width * 0.26
        height: width
        sourceSize.width: Math.ceil(width * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(height * Screen.devicePixelRatio)
        source: face.btn.additionalIcon === "" ? "" : PictureFiles.existing(Qt.resolvedUrl(face.btn.additionalIcon))
        visible: face.btn.additionalIcon !== ""
    }

    Text {
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 6 * face.btn.prop.scf
            bottomMargin: 12 * face.btn.prop.scf
        }
        height: 36 * face.btn.prop.scf
        visible: face.btn.label !== ""
        text: face.btn.label
        textFormat: Text.PlainText
        font: face.btn.labelFont
        fontSizeMode: Text.Fit
        minimumPointSize: 4
        color: face.btn.enabled ? "white" : "#b3b3b3"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
