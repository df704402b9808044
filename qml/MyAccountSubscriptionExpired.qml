// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// What is left after a subscription.
SubscriptionOffer {
    title: qsTr("Your subscription has expired.")
    note: qsTr("Until you renew it, only the first 30 seconds of each file are processed.")
    action: qsTr("Renew Subscription")
}
