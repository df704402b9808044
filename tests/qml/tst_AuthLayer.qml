// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "accountviews.js" as Views

/// The account overlay in the main window, by keyboard and mouse.
TestCase {
    id: test

    property var root: null
    property var overlay: null
    property var auth: null

    name: "AuthLayer"
    when: windowShown
    visible: true

    function init() {
        failOnWarning(/^(?!This plugin does not support propagateSizeHints)/);
        const component = Qt.createComponent("qrc:/qml/main.qml");
        root = createTemporaryObject(component, null);
        verify(root, component.errorString());
        auth = part("account");
        root.requestActivate();
        tryVerify(() => root.active);
    }
    function part(name: string): var {
        return Array.from(root.data).find(object => object.objectName === name);
    }
    function signOut(email: string) {
        auth.email = email;
        auth.signedOut();
        overlay = Views.find(root.contentItem, item => item.userAuth !== undefined);
        tryVerify(() => overlay.visible);
    }
    function type(text: string) {
        for (const letter of text)
            keyClick(letter);
    }

    function test_showsOnlyWhoMustSignIn() {
        compare(Views.find(root.contentItem, item => item.userAuth !== undefined), null);
        signOut("");
        const button = Views.find(root.contentItem, item => item.iconName === "Settings");
        verify(!button.enabled);
        auth.signedIn();
        verify(!overlay.visible && button.enabled);
    }

    function test_forms_data() {
        const rows = [];
        const row = (tag, mode, email, keys, call) => rows.push({
                    "tag": tag,
                    "mode": mode,
                    "email": email,
                    "keys": keys,
                    "call": call
                });
        row("sign in", "signIn", "", ["a@b", "pass"], "signIn|a@b|pass");
        row("somebody was here", "signIn", "a@b", ["pass"], "signIn|a@b|pass");
        row("register", "register", "", ["Ann", "a@b", "pass"], "registerAccount|Ann|a@b|pass");
        row("ask for a code", "recover", "", ["a@b"], "startRecovery|a@b");
        row("use the code", "newPassword", "a@b", ["c0de", "pass"], "recover|a@b|c0de|pass");
        return rows;
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
        auth.signedOut();
        compare(Views.find(overlay, item => item.password !== undefined).password, "");
    }

    function test_modesAndLinks() {
        signOut("a@b");
        auth.hasLocalAccount = true;
        auth.errorText = "No.";
        const click = text => {
            const link = Views.find(overlay, item => item.text === text && item.clicked !== undefined && item.visible);
            verify(link, text);
            mouseClick(link);
        };
        click("Use this computer's account");
        compare(auth.calls, ["signInLocally"]);
        click("Create an account");
        compare(auth.errorText, "");
        compare(overlay.mode, "register");
        click("Back to sign in");
        click("Forgot the password?");
        compare(overlay.mode, "recover");
        auth.recoveryStarted();
        compare(overlay.mode, "newPassword");
        auth.signedIn();
        compare(overlay.mode, "signIn");
    }

    function test_passwordCanBeSeen() {
        signOut("a@b");
        const secret = Views.find(overlay, item => item.secret === true);
        const input = Views.find(secret, item => item.echoMode !== undefined);
        const eye = Views.find(secret, item => item.iconName !== undefined);
        compare(input.echoMode, TextInput.Password);
        mouseClick(eye);
        compare(input.echoMode, TextInput.Normal);
        compare(eye.iconName, "password-visible");
        overlay.changeMode("recover");
        overlay.changeMode("signIn");
        compare(input.echoMode, TextInput.Password);
    }

    function test_backendFollows() {
        const backend = part("backend");
        backend.callSubscriptionCreating();
        auth.welcomed();
        backend.showMainWindow();
        compare(backend.calls.slice(-2), ["openUrl /subscription.html", "showInitialMessage"]);
        compare(auth.calls, ["recheck"]);
    }

    function test_fits_data() {
        return Views.scales(["signIn", "register", "recover", "newPassword"]);
    }
    function test_fits(data) {
        root.scf = data.scale;
        signOut("");
        auth.hasLocalAccount = true;
        auth.errorText = "word ".repeat(100);
        overlay.changeMode(data.state);
        auth.errorText = "word ".repeat(100);
        waitForRendering(root.contentItem);
        compare(Views.misfits(overlay), []);
    }
}
