// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/workerthread.h"

#include <QString>

#include <atomic>
#include <memory>

class ConvertingFile;
class TekoServer;

/// One archived result on its way to disk. Destroying it is the only way to end it, for whatever
/// reason: the conversion stops, requests are aborted, the service is asked to cancel a job that
/// began with a download, and what was downloaded but not converted is removed. GUI thread only.
class ArchiveRun final
{
public:
    /// The server must outlive the run. The stored path is the result in the format in which it was
    /// saved, the target path in the one that is wanted; the source is the user's own file, which
    /// may be gone.
    ArchiveRun(TekoServer &server, const QString &storedPath, const QString &targetPath,
               const QString &sourcePath);
    ~ArchiveRun();
    Q_DISABLE_COPY_MOVE(ArchiveRun)

    [[nodiscard]] const QString &storedPath() const { return m_storedPath; }
    [[nodiscard]] const QString &targetPath() const { return m_targetPath; }
    /// Where the download of the stored file goes.
    [[nodiscard]] QString downloadPath() const;

    /// Starts the download of the service's result of that number, the mix if wanted.
    void download(int id, bool isMix);

    /// Whether the stored file would need a picture that is no longer here.
    [[nodiscard]] bool isOriginalVideoMissing() const;

    [[nodiscard]] WorkerThread &worker() { return m_worker; }
    [[nodiscard]] std::unique_ptr<ConvertingFile> converter(const QString &input,
                                                            const QString &output) const;

private:
    TekoServer &m_server;
    const QString m_storedPath;
    const QString m_targetPath;
    const QString m_sourcePath;
    int m_downloadId = -1; ///< the service's number; -1 when nothing was downloaded
    std::atomic<int> m_cancelState = 0; ///< 1 stops the worker
    WorkerThread m_worker;
};
