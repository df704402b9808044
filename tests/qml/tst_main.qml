// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property var backend
    property var account
    property var root

    function openMenu() {
        test.click(test.root, "Help");
        verify(waitForRendering(test.window.contentItem));
    }
    function show(scale: real) {
        test.window = test.make("main", null, {
                "scf": scale
            });
        test.backend = findChild(test.window, "backend");
        test.account = findChild(test.window, "account");
        test.root = test.window.contentItem;
        tryCompare(test.window, "visible", true);
    }
    function init() {
        test.forbidWarnings();
        test.show(1);
    }
    function test_start() {
        compare(test.window.title, "TEKO 1");
        compare(test.backend.calls, ["onCompleted", "getLoggingStatus"]);
        compare(test.account.checks, 0);
        tryCompare(test.account, "checks", 1);
        test.window.color = "red";
        verify(waitForRendering(test.root));
        compare(test.account.checks, 1);
        const unseen = test.make("main", null);
        unseen.visible = false;
        tryCompare(findChild(unseen, "account"), "checks", 1);
    }
    function test_account() {
        const drop = Array.from(test.root.children).find(item => item.fileDropped);
        tryVerify(() => test.shows(test.root, "Loading..."));
        verify(!drop.enabled);
        test.account.signedOut();
        verify(!test.shows(test.root, "Loading..."));
        verify(!test.find(test.root, "Select File").enabled);
        verify(!drop.enabled);
        test.account.signedIn();
        verify(test.find(test.root, "Select File").enabled);
        verify(drop.enabled);
    }
    function test_buttons_data(): var {
        return [["My Account", "openMyAccountWindow"], ["Select File", "selectFile"], ["Settings", "openSettingsWindow"], ["Archive", "openArchive"]].map(r => ({
                        "tag": r[0],
                        "call": r[1]
                    }));
    }
    function test_buttons(data: var) {
        test.account.signedIn();
        test.backend.calls = [];
        test.click(test.root, data.tag);
        compare(test.backend.calls, [data.call]);
    }
    function test_menu_data(): var {
        return [["Help Desk", ["openUrl /helpdesk.html"]], ["Logout", ["logout"]], ["Training  Videos", ["openUrl /teko-server/redirect-training-videos.php"]], ["User Guide", ["openUrl /teko-server/redirect-user-guide.php"]], ["Check For Programs Updates", ["checkForUpdates"]], ["Logging: ON", ["toggleLogging false"]], ["Show Logs", ["showLogs"]], ["Other Dravo Software Products", ["openUrl /"]], ["Reset Gui Resizing", ["resetScf"]]].map(r => ({
                        "tag": r[0],
                        "calls": r[1]
                    }));
    }
    function test_menu(data: var) {
        test.backend.scfChanged(1.5);
        tryCompare(test.window.contentItem, "width", 705);
        tryCompare(test.account, "checks", 1);
        test.account.signedIn();
        test.backend.calls = [];
        test.openMenu();
        test.click(test.root, data.tag);
        compare(test.backend.calls, data.calls);
        tryVerify(() => !test.find(test.root, "Help Desk"));
        compare(test.account.checks, data.tag === "Logout" ? 2 : 1);
        compare(test.window.scf, data.tag === "Reset Gui Resizing" ? 1 : 1.5);
        test.openMenu();
        compare(test.find(test.root, "Logging: OFF") !== undefined, data.tag === "Logging: ON");
    }
    function test_scales_data(): var {
        return States.rows(["closed", "open"]);
    }
    function test_scales(data: var) {
        test.account.signedIn();
        test.backend.scfChanged(data.scale);
        for (const side of ["minimum", "maximum"]) {
            compare(test.window[side + "Width"], Math.floor(470 * data.scale));
            compare(test.window[side + "Height"], Math.floor(210 * data.scale));
        }
        tryCompare(test.window.contentItem, "width", Math.floor(470 * data.scale));
        if (data.state === "open") {
            test.openMenu();
            const entry = test.find(test.root, "Help Desk");
            fuzzyCompare(entry.mapToItem(null, 0, 0).x, test.window.width - 225 * data.scale, 2);
            compare(test.find(test.root, "Reset Gui Resizing") !== undefined, data.scale !== 1);
        }
        test.checkNames(test.root);
        test.checkFit(test.root, test.window.contentItem);
    }
    function test_visibility() {
        test.backend.hideMainWindow();
        verify(!test.window.visible);
        test.backend.showMainWindow();
        verify(test.window.visible);
    }
    function test_drops_data(): var {
        return [["linux", "file:///home/a/My%20Song%231.mp3", "/home/a/My Song#1.mp3"], ["linux", "file:///home/a/100%25.wav", "/home/a/100%.wav"], ["linux", "file:///a/b%2520c.wav", "/a/b%20c.wav"], ["mac", "file:///Users/a/%C3%A9.wav", "/Users/a/é.wav"], ["win", "file:///C:/Music/a%20b.wav", "C:/Music/a b.wav"], ["win", "file://nas/music/a.wav", "//nas/music/a.wav"], ["win", "file://localhost/C:/a.wav", "C:/a.wav"], ["linux", "file://localhost/home/a%20b.wav", "/home/a b.wav"], ["linux", "/home/file://localhost/a.wav", "/home/file://localhost/a.wav"], ["linux", "/plain/path.wav", "/plain/path.wav"], ["linux", "file:///a/%FF.wav", "/a/%FF.wav"]].map(r => ({
                        "tag": r[0] + " " + r[1],
                        "os": r[0],
                        "url": r[1],
                        "path": r[2]
                    }));
    }
    function test_drops(data: var) {
        const area = test.make("FileDrop", test.root, {
                "prop": test.makeProp(1)
            });
        compare(area.localPath(data.url, data.os), data.path);
    }

    name: "main"
}
