// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// An image with one picture per state; a missing picture shows nothing.
Image {
    id: icon

    property string name
    property string baseUrl
    property bool shadow: false

    readonly property url folder: Qt.resolvedUrl(icon.baseUrl === "" ? "/icons/" : icon.baseUrl)
    readonly property url normalSource: icon.file("-U.svg")
    readonly property url disabledSource: icon.file("-X.svg")
    readonly property url pressedSource: icon.file("-D.svg")
    readonly property url hoveredSource: icon.file("-F.svg")
    readonly property url basicSource: icon.file(".svg")

    function file(ending: string): url {
        return icon.name === "" ? "" : PictureFiles.existing(icon.folder + icon.name + ending);
    }

    source: icon.normalSource
    sourceSize.width: Math.ceil(icon.width * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(icon.height * Screen.devicePixelRatio)

    Rectangle {
        x: icon.width * 0.02
        y: icon.height * 0.04
        z: -1
        width: icon.width
        height: icon.height
        radius: icon.height * 0.16
        color: Colors.shadow
        visible: icon.shadow && icon.status === Image.Ready
    }

    states: [
        State {
            name: "none"
            PropertyChanges {
                icon.source: icon.basicSource
            }
        },
        State {
            name: "disabled"
            PropertyChanges {
                icon.source: icon.disabledSource
            }
        },
        State {
            name: "hovered"
            PropertyChanges {
                icon.source: icon.hoveredSource
            }
        },
        State {
            name: "pressed"
            PropertyChanges {
                icon.source: icon.pressedSource
            }
        }
    ]
}
