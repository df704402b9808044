// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The progress of one file, as its processing window shows it.
struct BatchProgress
{
    QString layer;
    double uploaded = 0; ///< percentages
    double downloaded = 0; ///< of both results together
    int secondsLeft = 0; ///< 0 while unknown

    bool operator==(const BatchProgress &) const = default;
};

/// "uploading 45.3 %" and the like; empty for a layer without work.
[[nodiscard]] QString stageText(const BatchProgress &progress);

/// One terminal line: a bar over all stages, the stage and the file's name, truncated to that many
/// columns.
[[nodiscard]] QString progressBar(const BatchProgress &progress, const QString &name, int columns);

/// The text on one line with control and format characters replaced: file names and messages may
/// contain escape sequences.
[[nodiscard]] QString printable(const QString &text);
