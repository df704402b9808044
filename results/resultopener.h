// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "results/resultnames.h"

class ProgramData;

/// The settings key under which the program path of a player is stored: its name without spaces.
[[nodiscard]] QString playerKey(const QString &playerName);

/// Opens a result in the program that the settings name for its kind, film or sound, or in the
/// system's default application when there is none or it is gone. Neither is watched; a failed
/// start is not reported.
void openInPlayer(const ProgramData &store, const QString &file);

/// Opens what the success layer names: "folder", "mix", or for any other text the instrument.
/// Returns the file that is missing, or empty.
[[nodiscard]] QString openResult(const ProgramData &store, const ResultPaths &paths,
                                 const QString &type);

/// Opens a folder in the system's file browser.
void openFolderInBrowser(const QString &folder);
