// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "../../../cases.js" as Cases

/// Stands in for the account side.
QtObject {
    objectName: "account"

    property bool busy: false
    property string errorText
    property string email
    property bool hasLocalAccount: false

    readonly property var initialCheck: () => Cases.record("initialCheck")
    readonly property var recheck: () => Cases.record("recheck")
    readonly property var signIn: (email, password) => Cases.record("signIn", email, password)
    readonly property var registerAccount: (name, email, password) => Cases.record("registerAccount", name, email, password)
    readonly property var startRecovery: email => Cases.record("startRecovery", email)
    readonly property var recover: (email, code, password) => Cases.record("recover", email, code, password)
    readonly property var signInLocally: () => Cases.record("signInLocally")
    readonly property var forgetError: () => errorText = ""

    signal signedIn
    signal signedOut
    signal welcomed
    signal recoveryStarted
}
