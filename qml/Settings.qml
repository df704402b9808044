// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
import QtQuick
import qml
import QtQuick.Layouts

/// The settings window: edits a copy of the stored values, which its controller stores on "OK".
WindowView {
    id: root

    property real storedScf: root.scf

    signal setProgramSettings(var data)
    signal resetOpening(string field)
    signal updatePathField(string path, string key)
    signal saveScf(real scf)
    signal cancel
    signal defaultSettings
    signal chooseNewPath(string key, string path)
    signal checkPathIsExisted(string key, string field)
    signal save(var data)

    function withNotSet(words: var): var {
        return [qsTr("Not Set"), ...words];
    }

    function editedSettings(): var {
        return {
            "default_path_save": savePath.value,
            "default_path_open": openPath.value,
            "default_video_format": videoFormat.value,
            "default_audio_format": audioFormat.value,
            "default_instrument": instrument.value,
            "default_video_player": videoPlayer.value,
            "default_audio_player": audioPlayer.value
        };
    }

    onSetProgramSettings: data => {
        savePath.show(data.default_path_save);
        openPath.show(data.default_path_open);
        videoFormat.show(data.default_video_format);
        audioFormat.show(data.default_audio_format);
        instrument.show(data.default_instrument);
        videoPlayer.show(data.default_video_player);
        audioPlayer.show(data.default_audio_player);
        scale.reset();
    }
    onResetOpening: field => (field === "audio" ? audioPlayer : videoPlayer).reset()
    onUpdatePathField: (path, key) => (key === savePath.type ? savePath : openPath).show(path)

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 15 * root.scf
        spacing: 14 * root.scf

        SettingsHeader {
            Layout.fillWidth: true
            Layout.preferredHeight: 47 * root.scf
            view: root
            onCancel: root.cancel()
        }

        GroupBox {
            Layout.fillWidth: true
            Layout.preferredHeight: 158 * root.scf
            view: root
            label: qsTr("Default Path")

            ColumnLayout {
                anchors.fill: parent
                spacing: 6 * root.scf

                SettingsPathField {
                    id: savePath

                    prop: root.prop
                    label: qsTr("Save File Location")
                    type: "default_path_save"
                    onChooseNewPath: (type, value) => root.chooseNewPath(type, value)
                }

                SettingsPathField {
                    id: openPath

                    prop: root.prop
                    label: qsTr("Open File Location")
                    type: "default_path_open"
                    onChooseNewPath: (type, value) => root.chooseNewPath(type, value)
                }
            }
        }

        GroupBox {
            Layout.fillWidth: true
            Layout.preferredHeight: 92 * root.scf
            view: root
            label: qsTr("Default Settings")

            RowLayout {
                anchors.fill: parent

                SettingsChoice {
                    id: videoFormat

                    prop: root.prop
                    label: qsTr("Video Output Format:")
                    entries: root.withNotSet(Vocabulary.allFormats)
                    boxWidth: 150
                    firstValue: Vocabulary.none
                    unknownIndex: 0
                }

                Item {
                    Layout.fillWidth: true
                }

                SettingsChoice {
                    id: audioFormat

                    prop: root.prop
                    label: qsTr("Audio Output Format:")
                    entries: root.withNotSet(Vocabulary.audioFormats)
                    boxWidth: 150
                    firstValue: Vocabulary.none
                    unknownIndex: 0
                }

                Item {
                    Layout.fillWidth: true
                }

                SettingsChoice {
                    id: instrument

                    prop: root.prop
                    label: qsTr("Instrument to Remove:")
                    entries: [qsTr("Not Set"), "Vocals", "Drums", "Bass", "Piano", "Guitar"]
                    boxWidth: 150
                    firstValue: Vocabulary.none
                    unknownIndex: 0
                }
            }
        }

        GroupBox {
            Layout.fillWidth: true
            Layout.preferredHeight: 92 * root.scf
            view: root
            label: qsTr("Integration With Other Dravo Programs")

            RowLayout {
                anchors.fill: parent

                SettingsChoice {
                    id: videoPlayer

                    mayAsk: true
                    prop: root.prop
                    label: qsTr("Opening Video File In:")
                    entries: ["Default Video Player", "Song Trimlet", "Video Trimlet", "Karaoke Trimlet"]
                    boxWidth: 200
                    onChosen: text => root.checkPathIsExisted(text, "video")
                }

                Item {
                    Layout.fillWidth: true
                }

                SettingsChoice {
                    id: audioPlayer

                    mayAsk: true
                    prop: root.prop
                    label: qsTr("Opening Audio File In:")
                    entries: ["Default Audio Player", "Song Trimlet", "Karaoke Trimlet"]
                    boxWidth: 200
                    onChosen: text => root.checkPathIsExisted(text, "audio")
                }
            }
        }

        SettingsScale {
            id: scale

            Layout.fillWidth: true
            Layout.preferredHeight: 118 * root.scf
            view: root
            stored: root.storedScf
            onSaveScf: scf => root.saveScf(scf)
        }

        Item {
            Layout.fillHeight: true
        }

        SettingsButtons {
            Layout.fillWidth: true
            Layout.preferredHeight: 36 * root.scf
            prop: root.prop
            onSave: root.save(root.editedSettings())
            onCancel: root.cancel()
            onDefaultSettings: root.defaultSettings()
        }
    }
}
