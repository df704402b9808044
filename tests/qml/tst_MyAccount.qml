// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

/// The account window's test.view.
ViewCase {
    id: test

    property var view

    function show(scale: real) {
        test.view = test.showView("MyAccount", [470, 400], scale, {
                "userName": "Ann",
                "userEmail": "a@b"
            });
        test.heed(test.view, ["save", "cancel", "unlockFullAccess"]);
        test.view.forceActiveFocus();
    }
    function test_editing() {
        test.show(1);
        test.click(test.view, "Edit");
        verify(test.view.isEditing);
        keyClick(Qt.Key_End);
        keyClick("a");
        // News from the service in the midst of it.
        test.view.userName = "Anna Maria";
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        keyClick("p");
        test.view.isBusy = true;
        keyClick(Qt.Key_Return);
        compare(test.said, []);
        test.view.isBusy = false;
        keyClick(Qt.Key_Return);
        compare(test.said, [["save", "Anna", "a@b", "p"]]);
        test.view.errorText = "No.";
        test.click(test.view, "Save");
        compare(test.said.length, 2);
        keyClick(Qt.Key_Escape);
        verify(!view.isEditing);
        compare(test.view.errorText, "");
        test.click(test.view, "Edit");
        keyClick(Qt.Key_Escape);
        keyClick("x");
        verify(test.shows(test.view, "Anna Maria"));
        keyClick(Qt.Key_Escape);
        compare(test.said.slice(2), [["cancel"]]);
        test.click(test.view, "Edit");
        keyClick(Qt.Key_Return);
        compare(test.said.slice(3), [["save", "Anna Maria", "a@b", ""]]);
    }

    function test_offers() {
        test.show(1);
        for (const [licence, offer] of [["none", "Unlock Full Access"], ["expired", "Renew Subscription"]]) {
            test.view.licence = licence;
            test.click(test.view, offer);
            compare(test.said.pop(), ["unlockFullAccess"]);
            test.view.licence = "active";
            compare(test.find(test.view, offer), undefined);
        }
    }

    function test_fits_data() {
        return States.rows(["active", "none", "expired"]);
    }
    function test_fits(data) {
        test.show(data.scale);
        test.view.licence = data.state;
        for (const name of ["userName", "userEmail", "planType", "planVersion", "planPeriod", "planAdded", "errorText"])
            test.view[name] = "<img src='x'>" + "W".repeat(80);
        for (const [left, isEditing] of [[0, false], [1000000, false], [0, true]]) {
            test.view.filesLeft = left;
            test.view.isEditing = isEditing;
            waitForRendering(test.view);
            test.checkFit(test.view);
            test.checkNames(test.view);
        }
    }

    mayShorten: /W/
    name: "MyAccount"
}
