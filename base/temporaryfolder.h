// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLockFile>
#include <QString>

/// The folder for temporary files, which all running programs of this user share. While this object
/// lives, the others know that somebody works in the folder.
class TemporaryFolder final
{
public:
    /// Removes what a program that crashed has left, unless another one works in the folder. An
    /// empty path stands for a folder that is not available.
    explicit TemporaryFolder(const QString &path);

    /// Ends the work in the folder and removes its files, unless another program still works there.
    /// Folders in it stay; what cannot be removed is left.
    void clear();

private:
    void removeFiles() const;
    [[nodiscard]] bool isUsedByOthers() const;

    const QString m_path;
    const QString m_lockName;
    QLockFile m_lock;
};
