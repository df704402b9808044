// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import "states.js" as States

ViewCase {
    id: test

    function test_titles() {
        for (const [version, mode, title] of [[undefined, undefined, "TEKO 1"], ["1.003", undefined, "TEKO 1.003"], ["1.003", "local", "TEKO 1.003: | local"]]) {
            rootContext.set("APP_VER", version);
            rootContext.set("DEV_MODE", mode);
            compare(test.make("Functions", test).setApplicationWindowTitle(), title);
        }
    }
    function test_times() {
        const functions = test.make("Functions", test);
        for (const [seconds, text] of [[-1, "0:00"], [0, "0:00"], [1, "0:01"], [59, "0:59"], [60, "1:00"], [605, "10:05"], [3599, "59:59"], [3600, "0:00"], [3725, "2:05"]])
            compare(functions.formatTime(seconds), text);
    }
    function test_capitals() {
        const functions = test.make("Functions", test);
        for (const [text, result] of [["", ""], ["v", "V"], ["vocals", "Vocals"], ["BASS", "Bass"], ["éa Ü", "Éa ü"]])
            compare(functions.capitalizeFirstLetter(text), result);
    }
    function test_colors_data(): var {
        const table = States.table("y", "offset", "height", "color");
        table.add("top", 0, 0, 200, "#80ff0000");
        table.add("middle", 100, 0, 200, Qt.rgba(0.5, 0, 0.5, (1 + 128 / 255) / 2));
        table.add("offset", 40, 160, 200, "#ff0000ff");
        table.add("above", -30, 0, 200, "#80ff0000");
        table.add("below", 190, 40, 200, "#ff0000ff");
        table.add("flat", 10, 0, 0, "#ffffff");
        return table.rows;
    }
    function test_colors(data: var) {
        const parent = test.showIn(100, 200);
        const holder = createTemporaryQmlObject("import QtQuick; Item {}", parent);
        holder.height = data.height;
        const background = test.make("Background", holder, {
                "from": "#80ff0000",
                "to": "#ff0000ff"
            });
        const item = createTemporaryQmlObject("import QtQuick; Item { y: " + data.y + " }", parent);
        const color = test.make("Functions", test).interpolateColor(background, item, data.offset, 0);
        fuzzyCompare(Qt.color(color), data.color, 1);
    }

    name: "Functions"
}
