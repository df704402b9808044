// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "results/resultnames.h"

class ProgramData;

/// The settings key under which the program path of a player is stored: its name without spaces.
[[nodiscard]] QString playerKey(const QString &playerName);

/// Opens a result in the player that the settings name for video or audio, or in the system's
/// default application when none is set or it does not exist. A failed start is not reported.
void openInPlayer(const ProgramData &store, const QString &file);

/// Opens a result by its name in the success layer: "folder", "mix", or for any other text the
/// instrument.
/// Returns the file that is missing, or empty.
[[nodiscard]] QString openResult(const ProgramData &store, const ResultPaths &paths,
                                 const QString &type);

/// Opens a folder in the system's file browser.
void openFolderInBrowser(const QString &folder);
