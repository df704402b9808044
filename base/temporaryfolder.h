// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLockFile>
#include <QString>

/// The folder for temporary files, which all running programs of this user share. While this object
/// lives, a lock file marks the folder as in use.
class TemporaryFolder final
{
public:
    /// Removes files left by a crashed program, unless another one uses the folder. An empty path
    /// stands for a folder that is not available.
    explicit TemporaryFolder(const QString &path);

    /// Releases the lock and removes the folder's files, unless another program still uses it.
    /// Subfolders and files that cannot be removed stay.
    void clear();

private:
    void removeFiles() const;
    [[nodiscard]] bool isUsedByOthers() const;

    const QString m_path;
    const QString m_lockName;
    QLockFile m_lock;
};
