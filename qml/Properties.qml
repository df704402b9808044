// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "OS" as OS

/// Properties shared by a view and all its components.
QtObject {
    id: properties

    /// An OS.CurrentTheme.
    required property QtObject theme
    property bool isActiveProduct: true
    property bool loggingActive: true

    readonly property OS.CurrentTheme looks: properties.theme as OS.CurrentTheme
    readonly property real scf: properties.looks.scf
    /// The width of a line, in whole pixels so that it stays sharp.
    readonly property int lineWidth: Math.max(1, Math.round(properties.scf))
    readonly property string defaultFont: properties.looks.defaultFont
    readonly property OS.Fonts fonts: properties.looks.fonts
    readonly property string osName: properties.looks.name
}
