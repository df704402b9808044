// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The offer after an expired subscription.
SubscriptionOffer {
    title: qsTr("Your subscription has expired.")
    note: qsTr("Until you renew it, only the first 30 seconds of each file are processed.")
    action: qsTr("Renew Subscription")
}
