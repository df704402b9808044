// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The outcome of creating the application folder: success, or why the program must exit.
struct AppFolderOutcome
{
    QString folder;
    int exitCode = 0; ///< 0: the folder and its subfolders exist
    QString error;

    bool operator==(const AppFolderOutcome &) const = default;
};

/// Creates the application folder with its subfolders for results, opened files, logs and temporary
/// files. The second choice is used only when the first cannot be created.
[[nodiscard]] AppFolderOutcome makeAppFolder(const QString &firstChoice,
                                             const QString &secondChoice);
