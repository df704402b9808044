// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "results/resultnames.h"

#include <QSettings>

#include <optional>

class ProgramData;

/// Remembers, from one start to the next, under which names this installation has saved the results
/// of a job: several runs of one song differ only by a number in brackets. GUI thread only.
class ResultMemory final
{
public:
    /// Keeps what it knows in the application folder. The store must outlive this object.
    explicit ResultMemory(const ProgramData &store);

    /// Takes the final paths of a job of the current service.
    void remember(int jobId, const ResultPaths &paths);

    /// Where the results of a job of the current service lie, or would lie in a format other than
    /// the one that was saved: under a name that no other job's result has. Nothing for a job that
    /// is not known or whose folder has gone.
    [[nodiscard]] std::optional<ResultPaths> find(int jobId, const QString &extension) const;

private:
    [[nodiscard]] QString key(int jobId, const char *which) const;
    [[nodiscard]] QString pathOf(int jobId, const QString &saved, const QString &extension) const;
    [[nodiscard]] bool isAnothers(int jobId, const QString &path) const;
    void forgetRemovedResults();

    const ProgramData &m_store;
    QSettings m_file;
};
