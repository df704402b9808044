// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QSettings;

/// Writes what was set to the settings file, together with what other running programs have written
/// there. False when that failed; the file then holds what it held before.
[[nodiscard]] bool writeSettings(QSettings &settings);

/// Keeps a copy beside a settings file that has lines which cannot be read, since the next write
/// drops them: "FILE.damaged", "FILE.damaged-2" and so on. Earlier copies stay; the same content is
/// kept once.
void keepDamagedSettings(const QString &file);
