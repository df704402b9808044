// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Stands in for the account side and keeps a list of what it was asked.
QtObject {
    id: fake

    objectName: "account"

    property int checks: 0
    property var calls: []
    property bool busy: false
    property string errorText
    property string email
    property bool hasLocalAccount: false

    signal signedIn
    signal signedOut
    signal welcomed
    signal recoveryStarted

    function note() {
        fake.calls.push(Array.from(arguments).join("|"));
    }
    function initialCheck() {
        ++checks;
    }
    function recheck() {
        note("recheck");
    }
    function signIn(email: string, password: string) {
        note("signIn", email, password);
    }
    function registerAccount(name: string, email: string, password: string) {
        note("registerAccount", name, email, password);
    }
    function startRecovery(email: string) {
        note("startRecovery", email);
    }
    function recover(email: string, code: string, password: string) {
        note("recover", email, code, password);
    }
    function signInLocally() {
        note("signInLocally");
    }
    function forgetError() {
        fake.errorText = "";
    }
}
