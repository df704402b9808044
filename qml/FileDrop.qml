// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Where files are dropped.
DropArea {
    id: area

    required property Properties prop

    signal fileDropped(string path)

    /// A name that is not UTF-8 stays encoded. No such file can be opened, which the processing window tells.
    function decoded(file: string): string {
        try {
            return decodeURIComponent(file);
        } catch (error) {
            return file;
        }
    }

    function localPath(file: string, osName: string): string {
        const text = area.decoded(file);
        console.info("Drag file: " + text);
        // A file on another machine has two slashes, and keeps them.
        const prefix = osName !== "win" ? "file://" : text.startsWith("file:///") ? "file:///" : "file:";
        return text.startsWith(prefix) ? text.slice(prefix.length) : text;
    }

    onDropped: drop => {
        if (drop.hasUrls)
            area.fileDropped(area.localPath(drop.urls[0], area.prop.osName));
    }
}
