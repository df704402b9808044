// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtQuick.Window
import QtTest

/// A test of a view: fails on any warning, shows the view in a window of its own, and finds controls as a screen reader does.
TestCase {
    id: test

    property var window
    /// What was said through the signals that heed() named, as arrays: the name, the arguments.
    property var said: []
    /// Texts that may be cut off with an ellipsis.
    property var mayShorten: /^File Name: /

    function init() {
        test.forbidWarnings();
    }
    /// Any but the one that the offscreen platform gives for a window of a fixed size.
    function forbidWarnings() {
        failOnWarning(/^(?!This plugin does not support propagateSizeHints)/);
    }
    function make(name: string, parent: var, properties: var): var {
        const component = Qt.createComponent("qrc:/qml/" + name + ".qml");
        const made = createTemporaryObject(component, parent, properties);
        verify(made, component.errorString());
        return made;
    }
    /// What all components take, at a scale.
    function makeProp(scale: real): var {
        const source = 'import QtQuick; import "OS" as OS; Item {
            property alias scf: theme.scf
            property alias prop: properties
            OS.CurrentTheme { id: theme }
            Properties { id: properties; theme: theme }
        }';
        const looks = createTemporaryQmlObject(source, test, "qrc:/qml/looks.qml");
        looks.scf = scale;
        return looks.prop;
    }
    function showIn(width: real, height: real): var {
        test.window = createTemporaryObject(frame, null, {
                "width": width,
                "height": height
            });
        test.window.requestActivate();
        tryCompare(test.window, "active", true);
        return test.window.contentItem;
    }
    /// A window's view at a scale, laid out.
    function showView(name: string, size: var, scale: real, properties: var): var {
        const parent = test.showIn(size[0] * scale, size[1] * scale);
        const view = test.make(name, parent, Object.assign({
                    "width": parent.width,
                    "height": parent.height,
                    "scf": scale
                }, properties));
        view.loaded();
        tryVerify(() => view.gradiendVar === undefined || view.gradiendVar > 0);
        return view;
    }
    function heed(view: var, signals: var) {
        test.said = [];
        for (const name of signals)
            view[name].connect(function () {
                    test.said.push([name].concat(Array.from(arguments)));
                });
    }
    /// All visible items under one, itself included.
    function items(item: var): var {
        let all = [item];
        for (let i = 0; i < item.children.length; ++i) {
            if (item.children[i].visible)
                all = all.concat(test.items(item.children[i]));
        }
        return all;
    }
    function isControl(item: var): bool {
        return !item.Accessible.ignored && (item.clicked !== undefined || item.activated !== undefined || item.cursorPosition !== undefined);
    }
    function find(item: var, name: string): var {
        return test.items(item).find(i => test.isControl(i) && i.Accessible.name === name);
    }
    function click(item: var, name: string) {
        const control = test.find(item, name);
        verify(control, name);
        mouseClick(control);
    }
    function texts(item: var): var {
        return test.items(item).filter(i => i.textFormat !== undefined && i.text !== "");
    }
    function shows(item: var, text: string): bool {
        return test.texts(item).some(i => i.text === text);
    }
    function checkNames(view: var) {
        for (const item of test.items(view).filter(test.isControl)) {
            verify(item.Accessible.role !== Accessible.NoRole, item + " has no role");
            verify(item.Accessible.name !== "" || item.Accessible.passwordEdit, item + " has no name");
        }
    }
    /// Texts and controls under an item lie within the view, and texts within their own space.
    function checkFit(item: var, within: var) {
        const view = within ?? item;
        for (const part of test.items(item).filter(i => i.textFormat !== undefined || test.isControl(i))) {
            const place = part.mapToItem(view, 0, 0);
            const what = (part.text || part.Accessible.name) + " at " + place.x + ", " + place.y;
            verify(place.x >= -0.5 && place.y >= -0.5, what);
            verify(place.x + part.width <= view.width + 0.5 && place.y + part.height <= view.height + 0.5, what);
        }
        for (const text of test.texts(item)) {
            verify(text.contentWidth <= text.width + 1 && text.contentHeight <= text.height + 1, text.text);
            verify(!text.truncated || test.mayShorten.test(text.text), text.text);
        }
    }

    when: windowShown

    Component {
        id: frame

        Window {
            visible: true
        }
    }
}
