// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "../../../cases.js" as Cases

/// Stands in for the main window's backend.
QtObject {
    objectName: "backend"

    /// What is stored, whatever the view asks for.
    property bool isLogging: true

    readonly property var selectFile: () => Cases.record("selectFile")
    readonly property var loadFile: path => Cases.record("loadFile", path)
    readonly property var openMyAccountWindow: () => Cases.record("openMyAccountWindow")
    readonly property var openSettingsWindow: () => Cases.record("openSettingsWindow")
    readonly property var openArchive: () => Cases.record("openArchive")
    readonly property var openUrl: url => Cases.record("openUrl", url)
    readonly property var checkForUpdates: () => Cases.record("checkForUpdates")
    readonly property var showLogs: () => Cases.record("showLogs")
    readonly property var logout: () => Cases.record("logout")
    readonly property var resetScf: () => Cases.record("resetScf")
    readonly property var showInitialMessage: () => Cases.record("showInitialMessage")
    readonly property var toggleLogging: active => Cases.record("toggleLogging", active)
    readonly property var getLoggingStatus: () => isLogging
    readonly property var onCompleted: () => Cases.record("onCompleted")
    readonly property var clearMemory: () => Cases

    signal hideMainWindow
    signal showMainWindow
    signal callSubscriptionCreating
    signal scfChanged(double s)
}
