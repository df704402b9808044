// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

/// The account overlay in the main window, by keyboard and mouse.
ViewCase {
    id: test

    property var root: null
    property var overlay: null
    property var auth: null

    function init() {
        test.forbidWarnings();
        root = test.make("main", null);
        auth = findChild(root, "account");
        root.requestActivate();
        tryVerify(() => root.active);
        // Who comes back to the window may have bought something meanwhile.
        compare(auth.calls, ["recheck"]);
        auth.calls = [];
    }
    /// The first visible item with a property.
    function having(item: var, name: string): var {
        return test.items(item).find(part => part[name] !== undefined);
    }
    function signOut(email: string) {
        auth.email = email;
        auth.signedOut();
        tryVerify(() => overlay = test.having(root.contentItem, "userAuth"));
    }
    function type(text: string) {
        for (const letter of text)
            keyClick(letter);
    }

    function test_showsOnlyWhoMustSignIn() {
        compare(test.having(root.contentItem, "userAuth"), undefined);
        signOut("");
        const button = test.find(root.contentItem, "Settings");
        verify(!button.enabled);
        auth.signedIn();
        verify(!overlay.visible && button.enabled);
    }

    function test_forms_data() {
        const table = States.table("mode", "email", "keys", "call");
        table.add("sign in", "signIn", "", ["a@b", "pass"], "signIn|a@b|pass");
        table.add("somebody was here", "signIn", "a@b", ["pass"], "signIn|a@b|pass");
        table.add("register", "register", "", ["Ann", "a@b", "pass"], "registerAccount|Ann|a@b|pass");
        table.add("ask for a code", "recover", "", ["a@b"], "startRecovery|a@b");
        table.add("use the code", "newPassword", "a@b", ["c0de", "pass"], "recover|a@b|c0de|pass");
        return table.rows;
    }
    function test_forms(data) {
        signOut(data.email);
        overlay.changeMode(data.mode);
        waitForRendering(root.contentItem);
        data.keys.forEach((text, index) => {
                if (index > 0)
                    keyClick(Qt.Key_Tab);
                type(text);
            });
        auth.busy = true;
        keyClick(Qt.Key_Return);
        compare(auth.calls, []);
        auth.busy = false;
        keyClick(Qt.Key_Return);
        compare(auth.calls, [data.call]);
        // The refusal takes nothing away.
        auth.errorText = "<img src='x'> No.";
        keyClick(Qt.Key_Enter);
        compare(auth.calls, [data.call, data.call]);
        auth.signedIn();
        keyClick(Qt.Key_Return);
        compare(auth.calls.length, 2);
        auth.signedOut();
        compare(test.having(overlay, "password").password, "");
    }

    function test_modesAndLinks() {
        signOut("a@b");
        auth.hasLocalAccount = true;
        auth.errorText = "No.";
        test.click(overlay, "Use this computer's account");
        compare(auth.calls, ["signInLocally"]);
        test.click(overlay, "Create an account");
        compare(auth.errorText, "");
        compare(overlay.mode, "register");
        test.click(overlay, "Back to sign in");
        test.click(overlay, "Forgot the password?");
        compare(overlay.mode, "recover");
        auth.recoveryStarted();
        compare(overlay.mode, "newPassword");
        auth.signedIn();
        compare(overlay.mode, "signIn");
    }

    function test_passwordCanBeSeen() {
        signOut("a@b");
        const secret = test.items(overlay).find(item => item.secret === true);
        const input = test.having(secret, "echoMode");
        const eye = test.having(secret, "iconName");
        compare(input.echoMode, TextInput.Password);
        mouseClick(eye);
        compare(input.echoMode, TextInput.Normal);
        compare(eye.iconName, "password-visible");
        overlay.changeMode("recover");
        overlay.changeMode("signIn");
        compare(input.echoMode, TextInput.Password);
    }

    function test_backendFollows() {
        const backend = findChild(root, "backend");
        backend.callSubscriptionCreating();
        auth.welcomed();
        backend.showMainWindow();
        compare(backend.calls.slice(-2), ["openUrl /subscription.html", "showInitialMessage"]);
        compare(auth.calls, ["recheck"]);
        // Nobody is welcomed while another window has taken the main window's place.
        backend.hideMainWindow();
        auth.welcomed();
        compare(backend.calls.filter(call => call === "showInitialMessage").length, 1);
    }

    function test_fits_data() {
        return States.rows(["signIn", "register", "recover", "newPassword"]);
    }
    function test_fits(data) {
        root.scf = data.scale;
        signOut("");
        auth.hasLocalAccount = true;
        auth.errorText = "word ".repeat(100);
        overlay.changeMode(data.state);
        auth.errorText = "word ".repeat(100);
        waitForRendering(root.contentItem);
        test.checkFit(overlay);
        test.checkNames(overlay);
    }

    mayShorten: /word/
    name: "AuthLayer"
}
