// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The offer for a demo account.
SubscriptionOffer {
    title: qsTr("This is a demo account.")
    note: qsTr("Only the first 30 seconds of each file are processed. A subscription unlocks full files.")
    action: qsTr("Unlock Full Access")
}
