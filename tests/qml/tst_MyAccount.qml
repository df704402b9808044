// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "accountviews.js" as Views

/// The account window's view.
TestCase {
    id: test

    property var view: null
    property var calls: []

    name: "MyAccount"
    when: windowShown
    visible: true
    width: 705
    height: 600

    function init() {
        failOnWarning(/.*/);
        const component = Qt.createComponent("qrc:/qml/MyAccount.qml");
        view = createTemporaryObject(component, test, {
                "width": 470,
                "height": 400,
                "userName": "Ann",
                "userEmail": "a@b",
                "focus": true
            });
        verify(view, component.errorString());
        calls = [];
        view.save.connect((name, email, password) => calls.push("save|" + [name, email, password].join("|")));
        view.cancel.connect(() => calls.push("cancel"));
        view.unlockFullAccess.connect(() => calls.push("unlock"));
        view.forceActiveFocus();
    }
    function button(text: string): Item {
        return Views.find(view, item => item.text === text && item.clicked !== undefined && item.visible);
    }

    function test_editing() {
        mouseClick(button("Edit"));
        verify(view.isEditing);
        keyClick(Qt.Key_End);
        keyClick("a");
        // News from the service in the midst of it.
        view.userName = "Anna Maria";
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        keyClick("p");
        view.isBusy = true;
        keyClick(Qt.Key_Return);
        compare(calls, []);
        view.isBusy = false;
        keyClick(Qt.Key_Return);
        compare(calls, ["save|Anna|a@b|p"]);
        view.errorText = "No.";
        mouseClick(button("Save"));
        compare(calls.length, 2);
        keyClick(Qt.Key_Escape);
        verify(!view.isEditing);
        compare(view.errorText, "");
        keyClick(Qt.Key_Escape);
        compare(calls.slice(2), ["cancel"]);
        mouseClick(button("Edit"));
        keyClick(Qt.Key_Return);
        compare(calls.slice(3), ["save|Anna Maria|a@b|"]);
    }

    function test_offers_data() {
        return [{
                "tag": "none",
                "action": "Unlock Full Access"
            }, {
                "tag": "expired",
                "action": "Renew Subscription"
            }];
    }
    function test_offers(data) {
        view.licence = data.tag;
        mouseClick(button(data.action));
        compare(calls, ["unlock"]);
        view.licence = "active";
        compare(button(data.action), null);
    }

    function test_fits_data() {
        return Views.scales(["active", "none", "expired"]);
    }
    function test_fits(data) {
        view.scf = data.scale;
        view.width = 470 * data.scale;
        view.height = 400 * data.scale;
        view.licence = data.state;
        for (const name of ["userName", "userEmail", "planType", "planVersion", "planPeriod", "planAdded", "errorText"])
            view[name] = "<img src='x'>" + "W".repeat(80);
        for (const left of [0, 1000000]) {
            view.filesLeft = left;
            waitForRendering(view);
            compare(Views.misfits(view), []);
        }
        view.isEditing = true;
        waitForRendering(view);
        compare(Views.misfits(view), []);
    }
}
