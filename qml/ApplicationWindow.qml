// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// A window of one size at each scale. Not the one of Qt's controls, whose module takes longer to load than all that
/// the main window shows at first.
Window {
    id: window

    property real scf: 1
    /// In pixels at scale 1.
    required property int designedWidth
    required property int designedHeight

    width: window.designedWidth * window.scf
    height: window.designedHeight * window.scf
    minimumWidth: window.designedWidth * window.scf
    minimumHeight: window.designedHeight * window.scf
    maximumWidth: window.designedWidth * window.scf
    maximumHeight: window.designedHeight * window.scf
}
