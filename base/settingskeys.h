// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLatin1String>

#include <array>

/// One entry of the settings file: its key and its default. The default of a folder is its name
/// below the application folder.
struct SettingsKey
{
    QLatin1String name;
    QLatin1String fallback;
};

/// All entries with a fixed key. The file also holds the program paths of players, under the
/// player's name without spaces.
namespace SettingsKeys {

inline constexpr SettingsKey videoPlayer{QLatin1String("default_video_player"),
                                         QLatin1String("Default Video Player")};
inline constexpr SettingsKey audioPlayer{QLatin1String("default_audio_player"),
                                         QLatin1String("Default Audio Player")};
inline constexpr SettingsKey videoFormat{QLatin1String("default_video_format"),
                                         QLatin1String("none")};
inline constexpr SettingsKey audioFormat{QLatin1String("default_audio_format"),
                                         QLatin1String("none")};
inline constexpr SettingsKey instrument{QLatin1String("default_instrument"), QLatin1String("none")};
inline constexpr SettingsKey saveFolder{QLatin1String("default_path_save"), QLatin1String("Save")};
inline constexpr SettingsKey openFolder{QLatin1String("default_path_open"), QLatin1String("Audio")};
inline constexpr SettingsKey logFolder{QLatin1String("default_path_logs"), QLatin1String("Logs")};
inline constexpr SettingsKey tempFolder{QLatin1String("default_path_temp"), QLatin1String("Temp")};
inline constexpr SettingsKey guiScale{QLatin1String("settings_gui_scale"), QLatin1String("1")};
inline constexpr SettingsKey logging{QLatin1String("APP_LOGFILE_ENABLED"), QLatin1String("false")};
inline constexpr SettingsKey serviceUrl{QLatin1String("service_url"), QLatin1String("")};
inline constexpr SettingsKey connectivityUrl{QLatin1String("connectivity_url"), QLatin1String("")};
inline constexpr SettingsKey websiteUrl{QLatin1String("website_url"), QLatin1String("")};

/// What the settings window edits beside the interface scale.
inline constexpr std::array edited{openFolder, saveFolder,  videoFormat, audioFormat,
                                   instrument, videoPlayer, audioPlayer};

} // namespace SettingsKeys
