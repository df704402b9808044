// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
.pragma library

const scales = [0.6, 1.0, 1.5];

// The processing window in all its states, with the longest texts that it has to show.
const longName = "A rather long song name, live at the harbour, 2024-06-01.flac";
const chosen = {"fileName": "Evening Song.mp4", "selectedInstrument": "vocals", "selectedOutputFormat": "MP4"};
const processing = [
    {"name": "select", "set": {"selectedInstrument": "none", "selectedOutputFormat": "none"}},
    {"name": "selected", "set": {"fileName": longName, "selectedInstrument": "guitar", "selectedOutputFormat": "FLAC"}},
    {"name": "formats", "set": {"selectedOutputFormat": "MOV"}, "click": "Output Format: MOV"},
    {"name": "instruments", "set": {"currentLayer": "instrument_list"}},
    {"name": "uploading", "set": {"currentLayer": "uploading", "uploadingPercent": 42.5, "fileName": longName}},
    {"name": "calculating", "set": {"currentLayer": "uploading", "uploadingPercent": 100}},
    {"name": "processing", "set": {"currentLayer": "processing", "remainingProcessingTime": 117}},
    {"name": "downloading", "set": {"currentLayer": "downloading", "downloading1Percent": 64, "downloading2Percent": 31}},
    {"name": "downloaded", "set": {"currentLayer": "downloading", "downloading1Percent": 100, "downloading2Percent": 73}},
    {"name": "converting", "set": {"currentLayer": "converting", "convertingText": "Converting 'mix without vocals - file.wav'\nto selected output format"}},
    {"name": "success", "set": {"currentLayer": "success", "isDemo": false}},
    {"name": "success-demo", "set": {"currentLayer": "success"}}
];

/** One test row for each scale and state. */
function rows(states) {
    const all = [];
    for (const scale of scales) {
        for (const state of states)
            all.push({"tag": (state.name || state) + " at " + scale, "scale": scale, "state": state});
    }
    return all;
}

/** A table for a data-driven test: add() takes a tag and a value for each column. */
function table(...columns) {
    const rows = [];
    const add = (tag, ...values) => {
        const row = {"tag": String(tag)};
        columns.forEach((column, i) => row[column] = values[i]);
        rows.push(row);
    };
    return {"rows": rows, "add": add};
}
