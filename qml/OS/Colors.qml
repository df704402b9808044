pragma Singleton
// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The colours of all views.
QtObject {
    readonly property color backgroundTop: "#06407c"
    readonly property color backgroundBottom: "#00050b"
    readonly property color cover: "#cc000000"
    readonly property color accent: "#60aeff"

    readonly property color text: "white"
    readonly property color textDisabled: "#b3b3b3"
    readonly property color textNote: "#a9c4ea"
    readonly property color textOnLight: "#10131a"
    readonly property color textOnLightDisabled: "#6b6f78"

    readonly property color frameTop: "#ffffff"
    readonly property color frameBottom: "#4c63bc"
    readonly property color groupFrameBottom: "#4960ba"

    readonly property color buttonTop: "#1C2E9B"
    readonly property color buttonBottom: "#021244"
    readonly property color buttonHoveredTop: "#0071BC"
    readonly property color buttonDisabledTop: "#B3B3B3"
    readonly property color buttonDisabledBottom: "#4D4D4D"
    readonly property color buttonFrameTop: "#FFFFFF"
    readonly property color buttonFrameBottom: "#0212AE"
    readonly property color buttonFrameDisabled: "#999999"

    readonly property color field: "#f4f6fa"
    readonly property color fieldReadOnly: "#c9d2e2"
    readonly property color fieldFrame: "#8a93a6"
    readonly property color fieldShadedTop: "#1b4f86"
    readonly property color fieldShadedBottom: "#0a2a52"

    readonly property color boxTop: "#f4f6fa"
    readonly property color boxBottom: "#d3d9e5"
    readonly property color boxHoveredTop: "#ffffff"
    readonly property color boxHoveredBottom: "#e3e8f1"
    readonly property color boxDownTop: "#c9d2e2"
    readonly property color boxDownBottom: "#e3e8f1"

    readonly property color menu: "#032a53"
    readonly property color menuFrame: "#011b37"
    readonly property color menuHighlight: "#60000000"

    readonly property color list: "#7d97b5"
    readonly property color listText: "#011b37"
    readonly property color listNote: "#e3ebf5"
    readonly property color listWarning: "#ffd9a8"
    readonly property color rowEven: "#496993"
    readonly property color rowOdd: "#6d8baf"

    readonly property color bar: "#001a3a"
    readonly property color barFrame: "#7f9fd0"

    readonly property color error: "#5a1220"
    readonly property color errorFrame: "#ff8a8a"
    readonly property color errorText: "#ffb3b3"
    readonly property color shadow: "#60000000"
}
