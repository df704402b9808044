// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

/// The area where files can be dropped.
DropArea {
    id: area

    required property Properties prop

    signal fileDropped(string path)

    /// A name that is not UTF-8 stays percent-encoded; the processing window reports that it cannot be opened.
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
        // "localhost" is dropped; the two slashes of another host (a share) stay.
        const file = text.replace(/^file:\/\/localhost\//i, "file:///");
        const prefix = osName !== "win" ? "file://" : file.startsWith("file:///") ? "file:///" : "file:";
        return file.startsWith(prefix) ? file.slice(prefix.length) : file;
    }

    onDropped: drop => {
        if (!drop.hasUrls)
            return;
        drop.accept();
        // Later: the source program blocks until the drop has been handled.
        Qt.callLater(area.fileDropped, area.localPath(drop.urls[0], area.prop.osName));
    }
}
