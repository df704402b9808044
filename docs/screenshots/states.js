// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
.pragma library

// Every window in every state, for the pictures in this folder and for the tests of the views.

const scales = [0.6, 1.0, 1.5];

const longName = "A rather long song name, live at the harbour, 2024-06-01";
const problem = "<b>This address</b> is not known here, or the password is wrong. Passwords have at least ten characters, one of which is a digit.";
const settings = {
    "default_path_save": "/home/anna/Documents/TEKO/Save",
    "default_path_open": "",
    "default_video_format": "WEBM",
    "default_audio_format": "none",
    "default_instrument": "Guitar",
    "default_video_player": "Video Trimlet",
    "default_audio_player": "Default Audio Player"
};
const song = {
    "name": "Evening Song",
    "instrument": "vocals",
    "extension": "wav",
    "demoFile": "no",
    "demoUser": "no",
    "isVideo": false,
    "isUsable": true,
    "btnInstrument": "download",
    "btnMix": "play",
    "deleted": "21 Dec 2026"
};
const songs = [
    {},
    {"name": longName, "isVideo": true, "extension": "webm"},
    {"demoFile": "yes", "demoUser": "yes"},
    {"name": "A long demo of a waltz", "demoFile": "yes", "instrument": "a long unknown instrument"},
    {"name": "../Night Train", "isUsable": false},
    {"name": "<img src='x'><b>Night Train</b>", "extension": "mp4", "deleted": "<i>soon</i>"}
].map(changes => Object.assign({}, song, changes));

// What a view shows where its state says nothing else, and its size at scale 1.
const views = {
    "main": {},
    "FileProcessing": {"width": 470, "height": 350, "fileName": "Evening Song.mp4", "selectedInstrument": "vocals", "selectedOutputFormat": "MP4"},
    "Settings": {"width": 540, "height": 670},
    "Archive": {"width": 540, "height": 400, "isProcessing": false},
    "ArchiveHandler": {"width": 470, "height": 350, "fileName": "Evening Song.mp4"},
    "MyAccount": {
        "width": 470, "height": 400, "userName": "Anna Musterfrau", "userEmail": "anna@example.org", "filesLeft": 7,
        "planType": "Personal", "planVersion": "1.0", "planPeriod": "12 months", "planAdded": "2026-01-15"
    }
};

/** A state of a view: its properties apart from the usual ones, and what is done with the view in a test case. */
function state(name, view, properties, act) {
    return {"tag": name, "view": view, "properties": Object.assign({}, views[view], properties), "act": act};
}

/** The main window while nobody is signed in. */
function signIn(name, mode, error) {
    return state(name, "main", {}, (main, test) => {
        Object.assign(test.auth, {"email": "anna@example.org", "hasLocalAccount": true});
        test.auth.signedOut();
        test.having("userAuth").changeMode(mode);
        test.auth.errorText = error;
    });
}

const states = [
    state("main-loading", "main", {}),
    state("main-home", "main", {}, (main, test) => test.auth.signedIn()),
    state("main-menu", "main", {}, (main, test) => {
        test.auth.signedIn();
        test.click("Help");
    }),
    signIn("main-signin", "signIn", ""),
    signIn("main-signin-error", "signIn", problem),
    signIn("main-register", "register", ""),
    signIn("main-register-error", "register", problem),
    signIn("main-recover", "recover", ""),
    signIn("main-newpassword", "newPassword", ""),
    state("processing-checking", "FileProcessing", {"isChecking": true}),
    state("processing-select", "FileProcessing", {"selectedInstrument": "none", "selectedOutputFormat": "none"}),
    state("processing-selected", "FileProcessing", {"fileName": longName + ".flac", "selectedInstrument": "guitar", "selectedOutputFormat": "FLAC"}),
    state("processing-formats", "FileProcessing", {"selectedOutputFormat": "MOV"}, (view, test) => test.click("Output Format: MOV")),
    state("processing-instruments", "FileProcessing", {"currentLayer": "instrument_list"}),
    state("processing-uploading", "FileProcessing", {"currentLayer": "uploading", "uploadingPercent": 42.47, "fileName": longName}),
    state("processing-calculating", "FileProcessing", {"currentLayer": "uploading", "uploadingPercent": 100}),
    state("processing-processing", "FileProcessing", {"currentLayer": "processing", "remainingProcessingTime": 3725}, (view, test) => {
        view.remainingProcessingTimeChanged();
        Array.from(test.having("takeAnswer").resources).forEach(timer => timer.stop());
    }),
    state("processing-downloading", "FileProcessing", {"currentLayer": "downloading", "downloading1Percent": 64, "downloading2Percent": 31}),
    state("processing-downloaded", "FileProcessing", {"currentLayer": "downloading", "downloading1Percent": 100, "downloading2Percent": 73}),
    state("processing-converting", "FileProcessing", {
        "currentLayer": "converting", "convertingText": "Converting 'mix without vocals - file.wav'\nto selected output format"
    }),
    state("processing-success", "FileProcessing", {"currentLayer": "success", "isDemo": false}),
    state("processing-success-demo", "FileProcessing", {"currentLayer": "success", "selectedOutputFormat": "wma", "playerForAudio": "Karaoke Trimlet"}),
    state("settings", "Settings", {}, view => view.setProgramSettings(settings)),
    state("archive", "Archive", {}, view => view.updateFiles(songs)),
    state("archive-tip", "Archive", {}, (view, test) => {
        view.updateFiles([Object.assign({}, song, {"name": (longName + ", ").repeat(4)})]);
        test.layOut();
        const tip = [].concat(...test.items().map(item => Array.from(item.resources))).find(object => object.delay && object.text.startsWith(longName));
        Object.assign(tip, {"delay": 0, "visible": true});
    }),
    state("archive-empty", "Archive", {}),
    state("archive-loading", "Archive", {"isProcessing": true}),
    state("archive-downloading", "ArchiveHandler", {"mode": "downloading", "downloadingPercent": 58}),
    state("archive-converting", "ArchiveHandler", {"mode": "converting", "fileName": longName + longName}),
    state("account-none", "MyAccount", {}),
    state("account-active", "MyAccount", {"licence": "active"}),
    state("account-expired", "MyAccount", {"licence": "expired", "filesLeft": 0}),
    state("account-long", "MyAccount", {
        "licence": "active", "userName": "long name ".repeat(9), "userEmail": "long@".repeat(20), "planType": "long type ".repeat(9),
        "planPeriod": "a long period ".repeat(9), "filesLeft": 1000000, "errorText": problem
    }),
    state("account-editing", "MyAccount", {"licence": "expired"}, (view, test) => {
        test.click("Edit");
        view.errorText = problem;
    })
];

/** The size of the state's window at a scale; the main window knows its own. */
function sizeOf(state, scale) {
    return state.view === "main" ? {} : {"width": state.properties.width * scale, "height": state.properties.height * scale};
}

/** What the state's view is made with at a scale. */
function propertiesOf(state, scale) {
    return Object.assign({"scf": scale}, state.properties, sizeOf(state, scale));
}

/** The rows of a data-driven test: each state at each scale. */
function atEveryScale() {
    return [].concat(...states.map(state => scales.map(scale => ({"tag": state.tag + "-" + scale.toFixed(1), "state": state.tag, "scale": scale}))));
}
