// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "../../docs/screenshots/states.js" as States
import "cases.js" as Cases

/// A test of views, which any warning fails. Shows a view in its window and finds controls as a screen reader does.
TestCase {
    id: test

    property var window
    /// The view in the window; the main view is its window itself.
    property var view
    /// The main window's fakes.
    property var backend
    property var auth

    function init() {
        // The offscreen platform says so of every window of a fixed size.
        failOnWarning(/^(?!This plugin does not support propagateSizeHints)/);
    }
    /// The signals and calls since the last time, or since a view was shown.
    function takeRecorded(): string {
        return Cases.recorded.splice(0).join(", ");
    }
    function make(name: string, parent: var, properties: var): var {
        const component = Qt.createComponent("qrc:/qml/" + name + ".qml");
        const made = createTemporaryObject(component, parent, properties);
        verify(made, component.errorString());
        return made;
    }
    function show(name: string, scale: real) {
        const state = States.states.find(state => state.tag === name);
        const properties = States.propertiesOf(state, scale);
        const isMain = state.view === "main";
        test.window = isMain ? test.make("main", null, properties) : createTemporaryObject(frame, null, States.sizeOf(state, scale));
        test.view = isMain ? test.window : test.make(state.view, test.window.contentItem, properties);
        test.backend = findChild(test.window, "backend");
        test.auth = findChild(test.window, "account");
        if (!isMain) {
            Cases.recordSignals(test.view);
            test.view.loaded();
            tryVerify(() => test.view.gradiendVar > 0);
        }
        test.window.requestActivate();
        tryVerify(() => test.window.active);
        if (state.act)
            state.act(test.view, test);
        test.layOut();
        test.takeRecorded();
    }
    /// Gives all items their places.
    function layOut() {
        test.window.update();
        verify(waitForRendering(test.window.contentItem));
    }
    /// All visible items under one, itself included; of the window and its popups, if none is named.
    function items(item: var): var {
        const top = item ?? test.window.contentItem.parent ?? test.window.contentItem;
        return [top].concat(...Array.from(top.children).filter(child => child.visible).map(test.items));
    }
    /// The first visible item with a property.
    function having(name: string): var {
        return test.items().find(item => item[name] !== undefined);
    }
    function isControl(item: var): bool {
        return !item.Accessible.ignored && (item.clicked !== undefined || item.activated !== undefined || item.cursorPosition !== undefined);
    }
    function find(name: string): var {
        return test.items().find(item => test.isControl(item) && item.Accessible.name === name);
    }
    function click(name: string) {
        mouseClick(test.find(name));
    }
    function type(text: string) {
        for (const letter of text)
            keyClick(letter);
    }

    when: windowShown

    Component {
        id: frame

        Window {
            visible: true
        }
    }
}
