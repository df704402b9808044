// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
.pragma library
.import QtQuick as Quick

// A text that each state shows, and the signals and calls that its buttons cause.
const expected = {
    "main-loading": ["Loading...", {"Settings": ""}],
    "main-home": ["", {"My Account": "openMyAccountWindow", "Select File": "selectFile", "Settings": "openSettingsWindow", "Archive": "openArchive"}],
    "main-menu": ["User Guide", {
        "Help Desk": "openUrl /helpdesk.html", "User Guide": "openUrl /teko-server/redirect-user-guide.php", "Training  Videos": "openUrl /teko-server/redirect-training-videos.php",
        "Logout": "logout, initialCheck", "Check For Programs Updates": "checkForUpdates", "Logging: ON": "toggleLogging false", "Show Logs": "showLogs",
        "Other Dravo Software Products": "openUrl /", "Reset Gui Resizing": "resetScf"}],
    "main-signin": ["Welcome to TEKO", {"Settings": "", "Use this computer's account": "signInLocally"}],
    "processing-checking": ["Loading...", {"PROCESS": "", "Home": ""}],
    "processing-select": ["Select the instrument you’d like to have removed", {"PROCESS": ""}],
    "processing-selected": ["FLAC", {"Home": "close", "Select Another File": "openAnotherFile", "PROCESS": "startProcess"}],
    "processing-uploading": ["Uploading file: 42.5%", {"Home": "", "CANCEL": "cancelProcess"}],
    "processing-calculating": ["Initial settings. Calculating time...", {}],
    "processing-processing": ["Processing file: 0.0%\nApproximate Time Remaining: 2:05", {"CANCEL": "cancelProcess"}],
    "processing-downloading": ["Downloading Mix Without Vocals - file.wav: 31.0%", {"CANCEL": "cancelProcess"}],
    "processing-downloaded": ["✔ Downloaded Vocals - file.wav", {}],
    "processing-converting": ["Selected Instrument: Vocals\nOutput Format: MP4", {"CANCEL": "cancelProcess"}],
    "processing-success": ["Process is Successful!", {
        "Home": "close", "Open Vocals In Default Video Player": "openFinalFiles main", "Open Mix In Default Video Player": "openFinalFiles mix",
        "Open Containing Folder": "openFinalFiles folder", "Isolate Another Instrument": "proceedAnotherInstrument", "Process Another File": "proceedAnotherFile"}],
    "processing-success-demo": ["Open Mix In\nKaraoke Trimlet", {}],
    "settings": ["This folder is not available", {
        "Home": "cancel", "CANCEL": "cancel", "Restore Default Settings": "defaultSettings", "Apply the size": "saveScf 1.5",
        "Choose a folder: Save File Location": "chooseNewPath default_path_save /home/anna/Documents/TEKO/Save"}],
    "archive": ["No file can have this name.", {
        "Home": "cancel", "CLOSE": "cancel", "Open Saved Folder": "openFolder", "Vocals": "operateFile 0 false wav", "Mix": "operateFile 0 true wav",
        "Unlock Full Access": "cancel, unlockFullAccess", "Process Full File": "getFullFile 3"}],
    "archive-empty": ["No processed files for last 30 days", {}],
    "archive-loading": ["Loading...", {"CLOSE": ""}],
    "archive-downloading": ["Downloading file: 58.0%", {"CANCEL": "cancelProcess"}],
    "archive-converting": ["File Converting", {"CANCEL": "cancelProcess"}],
    "account-none": ["Files left for today: 7", {"Unlock Full Access": "unlockFullAccess", "Back to the main window": "cancel", "Close": "cancel"}],
    "account-expired": ["No files left for today.", {"Renew Subscription": "unlockFullAccess"}]
};

/** Rows of data-driven tests: each button of each state, and lines such as "first | second", the first of which names the columns. */
function buttons() {
    const rows = state => Object.entries(expected[state][1]).map(([button, calls]) => ({"tag": state + ": " + button, "state": state, "button": button, "expected": calls}));
    return [].concat(...Object.keys(expected).map(rows));
}
function table(text) {
    const lines = text.trim().split("\n").map(line => line.split("|").map(cell => cell.trim()));
    return lines.slice(1).map(cells => Object.assign({"tag": cells.join(" ")}, ...cells.map((cell, i) => ({[lines[0][i]]: cell}))));
}

/** A text or control, its place in the window, and what covers all else there on purpose. Qt hides the name of a password, but not its description. */
function partOf(item) {
    const ancestors = [];
    for (let ancestor = item.parent; ancestor; ancestor = ancestor.parent)
        ancestors.push(ancestor);
    const cover = ancestors.find(ancestor => /^(QQuickPopupItem|LoadingHover|AuthLayer)/.test(String(ancestor)));
    const name = item.text || item.Quick.Accessible.name || item.Quick.Accessible.description;
    return {"name": name, "ancestors": ancestors, "cover": cover, "place": item.mapToItem(null, 0, 0, item.width, item.height)};
}
/** A field without a text has another text in its place. */
function overlap({place: a, cover: coverOfA}, {place: b, cover: coverOfB}) {
    const across = Math.min(a.right, b.right) - Math.max(a.left, b.left);
    const down = Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top);
    return across > 1 && down > 1 && a !== b && coverOfA === coverOfB;
}

/** The signals of the views and the calls of the fakes, in their order, as "name argument argument". */
const recorded = [];
function record(...words) {
    recorded.push(words.map(word => word instanceof Object ? JSON.stringify(word) : word).join(" "));
}
function recordSignals(view) {
    const isSignal = name => !/Changed$/.test(name) && view["on" + name.charAt(0).toUpperCase() + name.slice(1)];
    for (const name of Object.keys(view).filter(isSignal))
        view[name].connect((...values) => record(name, ...values));
}
