// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The fonts of all views; each is named after its size in points at scale 1.
QtObject {
    id: fonts

    required property string family
    required property real scf

    readonly property font font7_9: fonts.scaled(7, fonts.scf)
    readonly property font font8_10: fonts.scaled(8, fonts.scf)
    readonly property font font9_12: fonts.scaled(9, fonts.scf)
    readonly property font font10_13: fonts.scaled(10, fonts.scf)
    readonly property font font11_15: fonts.scaled(11, fonts.scf)
    readonly property font font12_16: fonts.scaled(12, fonts.scf)
    readonly property font font13_17: fonts.scaled(13, fonts.scf)
    readonly property font font14_18: fonts.scaled(14, fonts.scf)
    readonly property font font15_19: fonts.scaled(15, fonts.scf)
    readonly property font font16_21: fonts.scaled(16, fonts.scf)

    /// A font has to have a size, so a scale of 0 gives the smallest one.
    function scaled(points: int, scale: real): font {
        return Qt.font({
                "family": fonts.family,
                "pointSize": Math.max(points * scale, 0.5)
            });
    }
}
