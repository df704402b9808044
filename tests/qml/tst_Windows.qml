// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "../../docs/screenshots/states.js" as States
import "cases.js" as Cases

/// The main window with the overlay to sign in, and the windows for the settings, the archive and the account.
ViewCase {
    id: test

    /// Taken only from somebody who is signed in, and when the drop is over.
    function test_drops() {
        for (const [state, call] of [["main-loading", ""], ["main-signin", ""], ["main-home", "loadFile /home/a/My Söng#1 100%%20.mp3"]]) {
            test.show(state, 1);
            helper.drop(test.window, "file:///home/a/My%20S%C3%B6ng%231%20100%25%2520.mp3");
            compare(test.takeRecorded(), "");
            wait(0);
            compare(test.takeRecorded(), call);
        }
        for (const [os, url, path] of [["linux", "file:///a/%FF", "/a/%FF"], ["mac", "file:///a/b", "/a/b"], ["win", "file:///C:/a%20b", "C:/a b"], ["win", "file://nas/a", "//nas/a"], ["win", "file://localhost/C:/a", "C:/a"]])
            compare(test.having("localPath").localPath(url, os), path);
    }
    /// What is stored counts, not what was asked for.
    function test_logging() {
        test.show("main-menu", 1);
        test.click("Logging: ON");
        test.click("Help");
        test.backend.isLogging = false;
        test.click("Logging: ON");
        test.click("Help");
        verify(test.find("Logging: OFF") && !test.find("Reset Gui Resizing"));
    }
    function test_signedInAndOut() {
        test.show("main-home", 1);
        compare(test.window.title, "TEKO 1.003");
        const buttons = ["My Account", "Help", "Select File", "Settings", "Archive"].map(test.find);
        test.auth.signedOut();
        verify(buttons.every(button => !button.enabled));
        test.auth.signedIn();
        verify(buttons.every(button => button.enabled));
        test.auth.welcomed();
        // No message over another window.
        test.window.visible = false;
        test.auth.welcomed();
        test.backend.callSubscriptionCreating();
        test.backend.showMainWindow();
        compare(test.takeRecorded(), "showInitialMessage, openUrl /subscription.html, recheck");
    }
    function test_forms_data(): var {
        return Cases.table(`
            links | typed | call
            | pass | signIn anna@example.org pass
            Create an account | Ann  pass | registerAccount Ann anna@example.org pass
            Forgot the password? | | startRecovery anna@example.org
            Forgot the password?, I have a code already | c0de pass | recover anna@example.org c0de pass
            Create an account, Back to sign in | pass | signIn anna@example.org pass
        `);
    }
    /// What was typed stays after a refusal, and goes after success.
    function test_forms(data: var) {
        test.show("main-signin", 1);
        for (const link of data.links.split(", ").filter(link => link)) {
            test.auth.errorText = "No.";
            test.click(link);
            test.layOut();
            compare(test.auth.errorText, "");
        }
        test.type(data.typed.replace(/ /g, "\t"));
        for (const busy of [true, false, false]) {
            test.auth.busy = busy;
            keyClick(Qt.Key_Return);
            compare(test.takeRecorded(), busy ? "" : data.call);
        }
        test.auth.signedIn();
        compare(test.having("userAuth"), undefined);
        test.auth.signedOut();
        verify(!test.items().some(item => item.echoMode === TextInput.Password && item.text !== ""));
    }
    function test_passwordCanBeSeen() {
        test.show("main-signin", 1);
        const input = test.items().find(item => item.echoMode === TextInput.Password);
        test.click("Show the password");
        compare(input.echoMode, TextInput.Normal);
        test.click("Forgot the password?");
        test.auth.recoveryStarted();
        verify(test.find("Code") && input.echoMode === TextInput.Password);
    }

    /// The usual settings but for one value.
    function settingsWith(key: string, value: string): var {
        const settings = Object.assign({}, States.settings);
        settings[key] = value;
        return settings;
    }
    function checkSaved(settings: var) {
        test.find("OK").clicked();
        compare(Cases.recorded.pop(), "save " + JSON.stringify(settings));
    }
    function test_storedSettings_data(): var {
        return Cases.table(`
            key | value | label | shown
            default_video_format | none | Video Output Format: | Not Set
            default_video_format | webm | Video Output Format: | Not Set
            default_instrument | Harp | Instrument to Remove: | Not Set
            default_audio_player | Tape deck | Opening Audio File In: |
        `);
    }
    function test_storedSettings(data: var) {
        test.show("settings", 1);
        test.view.setProgramSettings(test.settingsWith(data.key, data.value));
        compare(test.find(data.label).displayText, data.shown);
        test.checkSaved(test.settingsWith(data.key, data.value));
    }
    function test_choosesSettings() {
        test.show("settings", 1);
        test.view.setProgramSettings(test.settingsWith("default_instrument", "Harp"));
        test.find("Instrument to Remove:").forceActiveFocus();
        keyClick(Qt.Key_End);
        keyClick(Qt.Key_Home);
        test.checkSaved(test.settingsWith("default_instrument", "none"));
    }
    /// A choice may ask for the player's place: no key makes one while the list is closed, and the list is closed by then.
    function test_players() {
        for (const [kind, label] of [["video", "Opening Video File In:"], ["audio", "Opening Audio File In:"]]) {
            test.show("settings", 1);
            const box = test.find(label);
            const shown = box.displayText;
            test.view.checkPathIsExisted.connect(() => Cases.record("open:", box.popup.visible));
            box.forceActiveFocus();
            for (const [key, opens] of [[Qt.Key_Shift, false], [Qt.Key_Down, true], [Qt.Key_Up, true], [Qt.Key_End, true], [Qt.Key_S, true], [Qt.Key_Space, true]]) {
                keyClick(key);
                compare([key, box.popup.visible], [key, opens]);
                keyClick(Qt.Key_Escape);
                compare([box.displayText, test.takeRecorded()], [shown, ""]);
            }
            for (const key of [Qt.Key_Space, Qt.Key_Home, Qt.Key_Down, Qt.Key_Return])
                keyClick(key);
            compare(test.takeRecorded(), "checkPathIsExisted Song Trimlet " + kind + ", open: false");
            test.view.resetOpening(kind);
            test.checkSaved(test.settingsWith("default_" + kind + "_player", box.textAt(0)));
        }
    }

    /// What can be operated in the archive's rows, from left to right, and the emblems of the buttons.
    function controls(): var {
        return test.items().filter(item => test.isControl(item) && (item.displayText || item.leftM)).map(item => item.displayText ?? item.icon.name + " " + item.text);
    }
    function test_archiveRows() {
        test.show("archive", 1);
        const both = ["download Vocals", "play Mix"];
        compare(test.controls(), ["WAV", ...both, "WEBM", ...both, "lock Unlock Full Access", ...both, "process Process Full File", "download A long unknown instrument", "play Mix", "MP3", ...both]);
        const names = test.items().filter(item => item.takeText).map(item => item.Accessible.name);
        compare([names[0], names[2]], ["Evening Song, whole file", "Evening Song, demo, the first 30 seconds"]);
    }
    function test_archiveRowKeepsWhatIsChosen() {
        test.show("archive", 1);
        test.view.updateFiles(Array(1000).fill(States.song));
        test.find("Output Format").forceActiveFocus();
        test.takeRecorded();
        keyClick(Qt.Key_End);
        test.view.changeButtons(0, "play", "download");
        const list = test.items().find(item => item.count === 1000 && item.currentIndex === 0);
        for (const row of [999, 0]) {
            list.currentIndex = row;
            test.layOut();
            compare(test.controls().slice(0, 4), row === 0 ? ["WMA", "play Vocals", "download Mix", "WAV"] : ["WAV", "download Vocals", "play Mix", "WAV"]);
        }
        test.click("Mix");
        compare(test.takeRecorded(), "changedFormat 0 wma, changeButtons 0 play download, operateFile 0 true wma");
    }

    function test_editingTheAccount() {
        test.show("account-none", 1);
        test.click("Edit");
        keyClick(Qt.Key_End);
        test.type("x");
        // News from the service take nothing away that was typed.
        test.view.userName = "Anna Maria";
        test.type("\t\tp\to");
        for (const busy of [true, false]) {
            test.view.isBusy = busy;
            keyClick(Qt.Key_Return);
            compare(test.takeRecorded(), busy ? "" : "save Anna Musterfraux anna@example.org p o");
        }
        keyClick(Qt.Key_Escape);
        test.click("Edit");
        keyClick(Qt.Key_Return);
        compare(test.takeRecorded(), "save Anna Maria anna@example.org  ");
    }

    name: "Windows"
}
