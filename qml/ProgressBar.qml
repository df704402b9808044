// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml

/// A progress bar whose filled part is animated even while the percentage does not change.
Rectangle {
    id: bar

    required property Properties prop
    property real percent: 0

    readonly property real scf: bar.prop.scf
    readonly property bool moving: bar.visible && filled.width > 0 && Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized

    implicitWidth: 340 * bar.scf
    implicitHeight: 30 * bar.scf
    radius: 6 * bar.scf
    color: Colors.bar
    border.color: Colors.barFrame
    border.width: bar.prop.lineWidth
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Progress")

    Item {
        id: filled

        anchors {
            left: parent.left
            top: parent.top
            bottom: parent.bottom
            margins: 2 * bar.scf
        }
        width: Math.min(Math.max(bar.percent / 100, 0), 1) * (bar.width - 4 * bar.scf)
        clip: true

        Image {
            id: tiles

            readonly property int tileWidth: Math.max(1, Math.round(32 * bar.scf))
            property int shift: 0

            x: tiles.shift - tiles.tileWidth
            width: filled.width + tiles.tileWidth
            height: filled.height
            source: PictureFiles.existing(Qt.resolvedUrl("/icons/progress-item.png"))
            sourceSize.width: tiles.tileWidth
            sourceSize.height: Math.max(1, Math.round(26 * bar.scf))
            fillMode: Image.TileHorizontally
            horizontalAlignment: Image.AlignLeft
        }
    }

    Timer {
        interval: Math.round(30 / Math.max(bar.scf, 0.1))
        repeat: true
        running: bar.moving
        onTriggered: tiles.shift = (tiles.shift + 2) % tiles.tileWidth
    }
}
