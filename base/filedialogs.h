// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

/// How the user is asked for files and folders. Each returns an absolute path, or empty when they
/// cancelled.
struct FileDialogs
{
    std::function<QString(const QString &caption, const QString &startFolder)> chooseFolder;
    std::function<QString(const QString &caption, const QString &startFolder,
                          const QString &filter)>
        chooseFile;

    /// Qt's dialogs, without a parent. They run modally on the GUI thread.
    [[nodiscard]] static FileDialogs system();
};
