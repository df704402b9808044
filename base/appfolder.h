// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The outcome of making the application folder: either all of it is there, or why the program must
/// end.
struct AppFolderOutcome
{
    QString folder;
    int exitCode = 0; ///< 0: the folder and its subfolders exist
    QString error;

    bool operator==(const AppFolderOutcome &) const = default;
};

/// Makes the application folder, the second choice only where the first cannot be made, and in it
/// the subfolders for results, opened files, logs and temporary files.
[[nodiscard]] AppFolderOutcome makeAppFolder(const QString &firstChoice,
                                             const QString &secondChoice);
