// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest
import "../../tests/qml"
import "states.js" as States

/// Pictures every window in every state into the current folder. Run by make.py.
ViewCase {
    id: shots

    function test_shots_data(): var {
        return States.atEveryScale();
    }
    function test_shots(data: var) {
        shots.show(data.state, data.scale);
        const root = shots.items()[0];
        mouseMove(root, root.width / 2, root.height - 2);
        // A cover shows itself a little later.
        tryVerify(() => shots.items().every(item => !item.takeKeyboard || item.opacity === 1));
        grabImage(root).save(data.tag + ".png");
    }

    name: "Screenshots"
}
