// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Where files are dropped.
DropArea {
    id: area

    required property Properties prop

    signal fileDropped(string path)

    /// Throws a URIError for a name that is not UTF-8.
    function localPath(file: string, osName: string): string {
        const text = decodeURIComponent(file);
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
