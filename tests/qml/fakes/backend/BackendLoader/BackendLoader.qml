// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Stands in for the main window's backend and keeps a list of what it was asked.
QtObject {
    id: fake

    objectName: "backend"

    property var calls: []

    signal hideMainWindow
    signal showMainWindow
    signal callSubscriptionCreating
    signal scfChanged(double s)

    function note(name, argument) {
        fake.calls.push(argument === undefined ? name : name + " " + argument);
    }
    function selectFile() {
        note("selectFile");
    }
    function loadFile(path: string) {
        note("loadFile", path);
    }
    function openMyAccountWindow() {
        note("openMyAccountWindow");
    }
    function openSettingsWindow() {
        note("openSettingsWindow");
    }
    function openArchive() {
        note("openArchive");
    }
    function onCompleted() {
        note("onCompleted");
    }
    function clearMemory() {
        console.info("clearMemory");
    }
    function openUrl(url: string) {
        note("openUrl", url);
    }
    function checkForUpdates() {
        note("checkForUpdates");
    }
    function showLogs() {
        note("showLogs");
    }
    function logout() {
        note("logout");
    }
    function resetScf() {
        note("resetScf");
    }
    function showInitialMessage() {
        note("showInitialMessage");
    }
    function toggleLogging(active: bool) {
        note("toggleLogging", active);
    }
    function getLoggingStatus(): bool {
        note("getLoggingStatus");
        return true;
    }
}
