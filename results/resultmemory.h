// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "results/resultnames.h"

#include <QSettings>

#include <optional>

class ProgramData;

/// Remembers across program runs under which names this installation has saved the results of a
/// job: several runs of one song differ only by a number in brackets. GUI thread only.
class ResultMemory final
{
public:
    /// Stored in results.ini in the application folder. The store must outlive this object.
    explicit ResultMemory(const ProgramData &store);

    /// Stores the final paths of a job of the current service.
    void remember(int jobId, const ResultPaths &paths);

    /// The paths of the results of a job of the current service, in the saved or another format,
    /// under names that no other job's results have. They are where they were saved or, when both
    /// have gone from there, in `folder`; the files need not exist. Empty for an unknown job.
    [[nodiscard]] std::optional<ResultPaths> find(int jobId, const QString &extension,
                                                  const QString &folder) const;

private:
    [[nodiscard]] QString key(int jobId, const char *which) const;
    [[nodiscard]] QString pathOf(int jobId, const QString &wanted, const QString &extension) const;
    [[nodiscard]] bool isAnothers(int jobId, const QString &path) const;
    void forgetRemovedResults();

    const ProgramData &m_store;
    QSettings m_file;
};
