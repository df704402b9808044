// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/workerthread.h"

#include <QString>

#include <atomic>
#include <memory>

class ConvertingFile;
class TekoServer;

/// One archived result that is being downloaded or converted. Always ended by destroying it: the
/// conversion stops, requests are aborted, the service is asked to cancel a job that began with a
/// download, and a download that was not converted is removed. GUI thread only.
class ArchiveRun final
{
public:
    /// The server must outlive the run. The stored path is the result in the format in which it was
    /// saved, the target path in the requested one; the source is the user's own file, which may no
    /// longer exist.
    ArchiveRun(TekoServer &server, const QString &storedPath, const QString &targetPath,
               const QString &sourcePath);
    ~ArchiveRun();
    Q_DISABLE_COPY_MOVE(ArchiveRun)

    [[nodiscard]] const QString &storedPath() const { return m_storedPath; }
    [[nodiscard]] const QString &targetPath() const { return m_targetPath; }
    /// The download's path.
    [[nodiscard]] QString downloadPath() const;

    /// Starts the download of the service's result with that number, or of its mix.
    void download(int id, bool isMix);

    /// Whether the stored file is a video and the user's original of it no longer exists.
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
