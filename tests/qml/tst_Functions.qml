// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick

ViewCase {
    id: test

    function test_title_data(): var {
        return [{
                "tag": "plain",
                "version": undefined,
                "mode": undefined,
                "title": "TEKO 1"
            }, {
                "tag": "version",
                "version": "1.003",
                "mode": undefined,
                "title": "TEKO 1.003"
            }, {
                "tag": "development",
                "version": "1.003",
                "mode": "local",
                "title": "TEKO 1.003: | local"
            }];
    }
    function test_title(data: var) {
        rootContext.set("APP_VER", data.version);
        rootContext.set("DEV_MODE", data.mode);
        compare(test.make("Functions", test).setApplicationWindowTitle(), data.title);
    }
    function test_times_data(): var {
        return [[-1, "0:00"], [0, "0:00"], [1, "0:01"], [59, "0:59"], [60, "1:00"], [605, "10:05"], [3599, "59:59"], [3600, "0:00"], [3725, "2:05"]].map(r => ({
                        "tag": r[0],
                        "seconds": r[0],
                        "text": r[1]
                    }));
    }
    function test_times(data: var) {
        compare(test.make("Functions", test).formatTime(data.seconds), data.text);
    }
    function test_capitals_data(): var {
        return [["", ""], ["v", "V"], ["vocals", "Vocals"], ["BASS", "Bass"], ["éa Ü", "Éa ü"]].map(r => ({
                        "tag": r[0],
                        "text": r[0],
                        "result": r[1]
                    }));
    }
    function test_capitals(data: var) {
        compare(test.make("Functions", test).capitalizeFirstLetter(data.text), data.result);
    }
    function test_colors_data(): var {
        return [{
                "tag": "top",
                "y": 0,
                "offset": 0,
                "height": 200,
                "color": "#80ff0000"
            }, {
                "tag": "middle",
                "y": 100,
                "offset": 0,
                "height": 200,
                "color": Qt.rgba(0.5, 0, 0.5, (1 + 128 / 255) / 2)
            }, {
                "tag": "offset",
                "y": 40,
                "offset": 160,
                "height": 200,
                "color": "#ff0000ff"
            }, {
                "tag": "above",
                "y": -30,
                "offset": 0,
                "height": 200,
                "color": "#80ff0000"
            }, {
                "tag": "below",
                "y": 190,
                "offset": 40,
                "height": 200,
                "color": "#ff0000ff"
            }, {
                "tag": "flat",
                "y": 10,
                "offset": 0,
                "height": 0,
                "color": "#ffffff"
            }];
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
