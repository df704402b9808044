// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// Where files are dropped.
DropArea {
    id: area

    required property Properties prop

    signal fileDropped(string path)

    /// A name that is not UTF-8 stays encoded. No such file can be opened, which the processing window reports.
    function decoded(file: string): string {
        try {
            return decodeURIComponent(file);
        } catch (error) {
            return file;
        }
    }

    function localPath(url: string, osName: string): string {
        const text = area.decoded(url);
        console.info("Drag file: " + text);
        // The machine itself may be named; another machine has two slashes, and keeps them.
        const file = text.replace(/^file:\/\/localhost\//i, "file:///");
        const prefix = osName !== "win" ? "file://" : file.startsWith("file:///") ? "file:///" : "file:";
        return file.startsWith(prefix) ? file.slice(prefix.length) : file;
    }

    onDropped: drop => {
        if (!drop.hasUrls)
            return;
        drop.accept();
        // Later: the other program waits until its drop is over.
        Qt.callLater(area.fileDropped, area.localPath(drop.urls[0], area.prop.osName));
    }
}
