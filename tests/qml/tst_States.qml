// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "../../docs/screenshots/states.js" as States
import "cases.js" as Cases

/// Every window in every state: at every scale, and with its buttons.
ViewCase {
    id: test

    /// Texts that are not to be seen just now as well.
    function allTexts(object: var): var {
        const parts = [...Array.from(object.children ?? []), ...Array.from(object.resources ?? []), object.contentItem];
        return (object.textFormat !== undefined ? [object] : []).concat(...parts.filter(part => part).map(test.allTexts));
    }

    function test_fit_data(): var {
        return States.atEveryScale();
    }
    function test_fit(data: var) {
        test.show(data.state, data.scale);
        const items = test.items();
        const texts = items.filter(item => item.textFormat !== undefined && item.text !== "");
        const expected = (Cases.expected[data.state] ?? [""])[0];
        verify(expected === "" || texts.some(text => text.text === expected), expected);
        for (const text of texts)
            verify(text.contentWidth < text.width + 1 && text.contentHeight < text.height + 1 && (!text.truncated || /long/.test(text.text)), text.text);
        for (const text of test.allTexts(test.window))
            verify(text.textFormat === Text.PlainText || text.text.startsWith("As a Demo users"), text.text);
        const controls = items.filter(item => test.isControl(item) || item.Accessible.role === Accessible.ProgressBar);
        const parts = controls.concat(texts).map(Cases.partOf).filter(part => !part.ancestors.some(ancestor => controls.includes(ancestor)));
        parts.forEach((part, index) => {
                const place = part.place;
                verify(part.name !== "", part.ancestors[0]);
                verify(place.left > -1 && place.top > -1 && place.right < items[0].width + 1 && place.bottom < items[0].height + 1, part.name);
                for (const other of parts.slice(index + 1))
                    verify(!Cases.overlap(part, other), part.name + " and " + other.name);
            });
        for (const picture of items.filter(item => item.sourceSize !== undefined)) {
            for (const state of picture.name ? ["", "hovered", "pressed", "disabled"] : [""]) {
                picture.state = state;
                // The eye of a password can always be used.
                verify(picture.status === Image.Ready || state === "disabled" && /^password/.test(picture.name), picture.name + state);
            }
        }
    }
    function test_buttons_data(): var {
        return Cases.buttons();
    }
    /// A double click acts once, too.
    function test_buttons(data: var) {
        test.show(data.state, 1.5);
        mouseDoubleClickSequence(test.find(data.button));
        compare(test.takeRecorded(), data.expected);
    }

    name: "States"
}
