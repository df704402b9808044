// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QSettings;

/// Writes pending changes to the settings file, merged with what other running programs have
/// written there. Returns false when that failed; the file then has its previous content.
[[nodiscard]] bool writeSettings(QSettings &settings);

/// Copies a settings file with unreadable lines, since the next write drops them, to
/// "FILE.damaged", "FILE.damaged-2" and so on. Earlier copies stay; the same content is kept once.
void keepDamagedSettings(const QString &file);
