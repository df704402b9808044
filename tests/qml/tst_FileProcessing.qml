// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import QtTest

TestCase {
    id: test

    name: "FileProcessing"
    when: windowShown
    width: 705
    height: 525
    visible: true

    function init() {
        failOnWarning(/.*/);
    }
    function test_loads() {
        const component = Qt.createComponent("qrc:/qml/FileProcessing.qml");
        const view = createTemporaryObject(component, test, {
                "width": 470,
                "height": 350
            });
        verify(view, component.errorString());
        for (const l of ["select_instrument", "instrument_list", "uploading", "processing", "downloading", "converting", "success"]) {
            view.currentLayer = l;
            waitForRendering(view);
        }
    }
    function test_main() {
        const component = Qt.createComponent("qrc:/qml/main.qml");
        const view = createTemporaryObject(component, null);
        verify(view, component.errorString());
        waitForRendering(view.contentItem);
    }
    function test_all_data() {
        return ["SectionLabel", "GroupBox"].map(n => ({
                        "tag": n
                    }));
    }
    function test_all(data) {
        const component = Qt.createComponent("qrc:/qml/" + data.tag + ".qml");
        verify(component.status === Component.Ready, component.errorString());
    }
}
