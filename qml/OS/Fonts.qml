// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The fonts of all views; each is named after its size in points at scale 1.
QtObject {
    id: fonts

    required property string family
    required property real scf

    property font font7_9
    property font font8_10
    property font font9_12
    property font font10_13
    property font font11_15
    property font font12_16
    property font font13_17
    property font font14_18
    property font font15_19
    property font font16_21

    /// A font has to have a size, so a scale of 0 means the smallest one.
    function size(points: int): real {
        return Math.max(points * fonts.scf, 0.5);
    }

    font7_9.family: fonts.family
    font7_9.pointSize: fonts.size(7)
    font8_10.family: fonts.family
    font8_10.pointSize: fonts.size(8)
    font9_12.family: fonts.family
    font9_12.pointSize: fonts.size(9)
    font10_13.family: fonts.family
    font10_13.pointSize: fonts.size(10)
    font11_15.family: fonts.family
    font11_15.pointSize: fonts.size(11)
    font12_16.family: fonts.family
    font12_16.pointSize: fonts.size(12)
    font13_17.family: fonts.family
    font13_17.pointSize: fonts.size(13)
    font14_18.family: fonts.family
    font14_18.pointSize: fonts.size(14)
    font15_19.family: fonts.family
    font15_19.pointSize: fonts.size(15)
    font16_21.family: fonts.family
    font16_21.pointSize: fonts.size(16)
}
