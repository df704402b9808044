// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "archive/archiverun.h"
#include "base/viewwindow.h"
#include "service/tekoserver.h"

#include <memory>

class ConvertingFile;
class ProgramData;

/// The modal window that saves one archived result to disk: downloads it if necessary, converts it,
/// and closes itself. A job that fails or is cancelled leaves no process, download or partial file;
/// a result that is complete by then stays. One job at a time. GUI thread only.
class ArchiveHandler final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit ArchiveHandler(ProgramData &store);

    /// Shows the window for a job, which download() or convert() then starts. The stored path is
    /// the result in the format in which it was saved, the target path in the requested one; the
    /// source is the user's own file, which may no longer exist.
    void openWindow(const QString &storedPath, const QString &targetPath,
                    const QString &sourcePath);

    /// Downloads the service's result with that number, or its mix, converts it to the stored file
    /// and that to the target.
    void download(int id, bool isMix);

    /// Converts the stored file to the target.
    void convert();

signals:
    void loaded();
    /// The target exists now.
    void finishWork();
    /// The window has closed, regardless of the outcome.
    void ended();

public slots:
    /// Shows the progress of the download in percent; at 100 continues with its conversion.
    void downloadingFirst(double percents);
    /// The stored file was converted or has failed: continues with the target, or reports an error.
    void doneDownloadedConvert();
    /// The target was converted or has failed: emits finishWork() and closes, or reports an error.
    void doneConvert();
    /// Ends the job and closes the window.
    void cancelProcess();
    /// Ends the job, shows the message and closes the window.
    void showError(QString message);

protected:
    void windowClosed() override;

private:
    void setMode(const char *mode);
    void useDownload();
    void startWorker(const QString &input, const QString &output, void (ConvertingFile::*entry)(),
                     void (ArchiveHandler::*slot)());
    [[nodiscard]] bool isMade(const QString &result);

    ProgramData &m_store;
    TekoServer m_server;
    std::unique_ptr<ArchiveRun> m_run; ///< null once it has ended
};
