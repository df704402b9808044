// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class ProgramData;

/// The settings key under which the program path of a player is stored: its name without spaces.
[[nodiscard]] QString playerKey(const QString &playerName);

/// Opens a file in the program stored for that player, or in the system's default application when
/// there is none or it is gone. Neither is watched; a failed start is not reported.
void openInPlayer(const ProgramData &store, const QString &playerName, const QString &file);

/// Opens a folder in the system's file browser.
void openFolderInBrowser(const QString &folder);
