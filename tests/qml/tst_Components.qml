// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "states.js" as States

ViewCase {
    id: test

    property var prop

    function build(name: string, properties: var, scale: real): var {
        const parent = test.showIn(600, 400);
        test.prop = test.makeProp(scale);
        const background = test.make("Background", parent);
        const common = {
            "prop": test.prop
        };
        if (["GroupBox", "SectionLabel", "FileNameField", "SelectedItemsLabel"].includes(name))
            Object.assign(common, {
                    "mainFunctions": test.make("Functions", test),
                    "background": background,
                    "recalc": 0
                });
        return test.make(name, parent, Object.assign(common, properties));
    }
    function test_sizes_data(): var {
        const table = States.table("width", "height", "properties");
        table.add("GroupBox", 200, 70, {
                "label": "Title",
                "width": 200
            });
        table.add("SectionLabel", 352, 47, {
                "text": "TITLE"
            });
        table.add("FileNameField", 300, 32, {
                "fileName": States.longName,
                "width": 300
            });
        table.add("SelectedItemsLabel", 340, 60, {
                "currentLayer": "uploading",
                "selectedInstrument": "bass",
                "selectedOutputFormat": "MP3"
            });
        table.add("ProgressBar", 340, 30, {});
        table.add("Dropdown", 120, 24, {
                "model": ["A"]
            });
        table.add("MenuItemCustom", 220, 22, {
                "text": "Entry",
                "width": 220
            });
        return table.rows;
    }
    function test_sizes(data: var) {
        for (const scale of States.scales) {
            if (data.properties.width !== undefined)
                data.properties.width = data.width * scale;
            const item = test.build(data.tag, data.properties, scale);
            fuzzyCompare(item.width, data.width * scale, 0.01);
            fuzzyCompare(item.height, data.height * scale, 0.01);
            test.checkFit(item);
        }
    }
    function test_fonts() {
        for (const scale of [0, 0.6, 1, 2]) {
            const fonts = test.makeProp(scale).fonts;
            for (const name of ["font7_9", "font8_10", "font9_12", "font10_13", "font11_15", "font12_16", "font13_17", "font14_18", "font15_19", "font16_21"]) {
                compare(fonts[name].family, "Arial");
                compare(fonts[name].pointSize, Math.max(parseInt(name.slice(4)) * scale, 0.5));
            }
        }
    }
    function test_icon() {
        const icon = test.make("Icon", test.showIn(50, 50), {
                "width": 30,
                "height": 30
            });
        for (const [state, name, file] of [["", "home", "home-U.svg"], ["none", "home", ""], ["disabled", "home", "home-X.svg"], ["hovered", "home", "home-F.svg"], ["pressed", "home", "home-D.svg"], ["none", "play", "play.svg"], ["", "missing", ""]]) {
            icon.baseUrl = "qrc:/icons/";
            icon.state = state;
            icon.name = name;
            compare(String(icon.source), file === "" ? "" : "qrc:/icons/" + file);
            compare(icon.status, file === "" ? Image.Null : Image.Ready);
            icon.baseUrl = "qrc:/elsewhere/";
            compare(String(icon.source), "");
        }
    }
    function test_btn() {
        const btn = test.build("Btn", {
                "iconName": "home",
                "iconWidth": 40,
                "x": 100,
                "y": 100,
                "tooltip": "Home"
            }, 1);
        mouseMove(test.window.contentItem, 5, 5);
        compare(btn.state, "");
        btn.isCustomHovered = true;
        compare(btn.state, "hovered");
        btn.isCustomHovered = false;
        mouseMove(btn, 20, 20);
        tryCompare(btn, "state", "hovered");
        tryVerify(() => test.shows(test.window.contentItem, "Home"));
        mousePress(btn);
        compare(btn.state, "pressed");
        mouseRelease(btn);
        btn.enabled = false;
        compare(btn.state, "disabled");
        compare(btn.activeFocus, false);
    }
    function test_textBtn_data(): var {
        const table = States.table("from", "to", "border", "clicks");
        table.add("normal", "#1C2E9B", "#021244", "#0212AE", 2);
        table.add("hovered", "#0071BC", "#021244", "#0212AE", 2);
        table.add("pressed", "#021244", "#1C2E9B", "#0212AE", 3);
        table.add("disabled", "#B3B3B3", "#4D4D4D", "#999999", 0);
        return table.rows;
    }
    function test_textBtn(data: var) {
        const btn = test.build("TextBtn", {
                "text": "OK",
                "x": 100,
                "y": 100,
                "width": 100,
                "height": 40,
                "enabled": data.tag !== "disabled"
            }, 1);
        clicks.target = btn;
        clicks.clear();
        mouseMove(test.window.contentItem, 5, 5);
        if (data.tag === "hovered")
            mouseMove(btn, 20, 20);
        if (data.tag === "pressed")
            mousePress(btn);
        tryVerify(() => Qt.colorEqual(btn.backgroundFrom, data.from));
        verify(Qt.colorEqual(btn.backgroundTo, data.to));
        verify(Qt.colorEqual(btn.borderTo, data.border));
        if (data.tag === "pressed")
            mouseRelease(btn);
        btn.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        btn.visible = false;
        keyClick(Qt.Key_Return);
        compare(clicks.count, data.clicks);
    }
    function test_textField() {
        const field = test.build("TextField", {
                "label": "Password",
                "value": "secret",
                "width": 200
            }, 1);
        verify(test.shows(field, "******") && !test.shows(field, "secret"));
        field.editing = true;
        const input = test.items(field).find(i => i.cursorPosition !== undefined);
        compare(input.echoMode, TextInput.Password);
        input.forceActiveFocus();
        keyClick("x", Qt.NoModifier);
        compare(field.value, "secretx");
        field.label = "Name";
        field.editing = false;
        verify(test.shows(field, "secretx"));
    }
    function test_dropdown() {
        const box = test.build("Dropdown", {
                "model": ["MP3", "<img src=x>", "WAV"],
                "y": 380
            }, 1);
        mouseClick(box);
        tryCompare(box.popup, "opened", true);
        const list = box.popup.contentItem;
        verify(list.mapToItem(null, 0, 0).y + list.height <= 400);
        mouseClick(list.itemAtIndex(1));
        compare(box.currentText, "<img src=x>");
        tryCompare(box.popup, "visible", false);
        const hidden = test.build("Dropdown", {
                "model": ["MP3"],
                "mainVisible": false
            }, 1);
        compare(test.texts(hidden).length, 0);
        hidden.forceActiveFocus(Qt.TabFocusReason);
        verify(!hidden.activeFocusOnTab);
    }
    function test_loadingHoverBlocks() {
        const below = test.build("TextBtn", {
                "text": "Below",
                "width": 600,
                "height": 400
            }, 1);
        clicks.target = below;
        clicks.clear();
        below.forceActiveFocus();
        const hover = test.make("LoadingHover", below.parent, {
                "prop": test.prop
            });
        tryVerify(() => test.shows(hover, "Loading..."));
        for (const button of [Qt.LeftButton, Qt.RightButton])
            mouseClick(hover, 5, 5, button);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Space);
        compare(clicks.count, 0);
        hover.visible = false;
        keyClick(Qt.Key_Space);
        compare(clicks.count, 1);
    }
    /// The bar moves even when the percentage does not, and rests when nobody can see it.
    function test_progressBar() {
        const bar = test.build("ProgressBar", {
                "percent": 50
            }, 1);
        const filled = test.items(bar).find(i => i.clip);
        compare(filled.width, 168);
        const tiles = filled.children[0];
        const start = tiles.x;
        tryVerify(() => tiles.x !== start);
        verify(tiles.x <= 0 && tiles.x + tiles.width >= filled.width);
        for (const [percent, width] of [[-5, 0], [0, 0], [100, 336], [250, 336]]) {
            bar.percent = percent;
            compare(filled.width, width);
        }
        verify(bar.moving);
        test.window.visible = false;
        verify(!bar.moving);
        test.window.visible = true;
        bar.visible = false;
        verify(!bar.moving);
    }
    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    name: "Components"
}
