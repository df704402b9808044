// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick

/// The words that the program and the processing service agree on.
QtObject {
    id: vocabulary

    readonly property string none: "none"
    readonly property list<string> videoFormats: ["MP4", "MKV", "MOV", "WMV", "MPG", "WEBM"]
    readonly property list<string> audioFormats: ["MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"]
    readonly property list<string> allFormats: ["MP4", "MKV", "MOV", "WMV", "MPG", "WEBM", "MP3", "WAV", "M4A", "AIFF", "FLAC", "WMA"]

    readonly property list<string> busyLayers: ["uploading", "processing", "downloading", "converting"]

    function isBusy(layer: string): bool {
        return vocabulary.busyLayers.includes(layer);
    }

    /// The archive writes its formats in lower case.
    function isAudio(format: string): bool {
        return vocabulary.audioFormats.includes(format.toUpperCase());
    }
}
