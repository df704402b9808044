// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Stands in for the account side.
QtObject {
    property int checks: 0

    signal signedIn
    signal signedOut

    function initialCheck() {
        ++checks;
    }
}
