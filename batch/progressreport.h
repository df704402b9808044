// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// Where one file stands, as its processing window shows it.
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

/// One line of a terminal: a bar over all stages, the stage and the file's name, cut to that many
/// columns.
[[nodiscard]] QString progressBar(const BatchProgress &progress, const QString &name, int columns);

/// The text on one line, without what a terminal would obey: file names and messages hold anything.
[[nodiscard]] QString printable(const QString &text);
