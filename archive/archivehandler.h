// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "archive/archiverun.h"
#include "base/viewwindow.h"
#include "service/tekoserver.h"

#include <memory>

class ConvertingFile;
class ProgramData;

/// The modal window that gets one archived result onto disk: downloads it if need be, converts it,
/// and closes itself. Whatever ends a job early leaves no process, no download and no partial file
/// behind; a result that is whole by then stays. One job at a time. GUI thread only.
class ArchiveHandler final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit ArchiveHandler(ProgramData &store);

    /// Shows the window for a job, which download() or convert() then starts. The stored path is
    /// the result in the format in which it was saved, the target path in the one that is wanted;
    /// the source is the user's own file, which may be gone.
    void openWindow(const QString &storedPath, const QString &targetPath,
                    const QString &sourcePath);

    /// Fetches the service's result of that number, the mix if wanted, makes the stored file from
    /// it and the target from that.
    void download(int id, bool isMix);

    /// Makes the target from the stored file.
    void convert();

signals:
    void loaded();
    /// The target exists now.
    void finishWork();
    /// The window has closed, whatever became of the job.
    void ended();

public slots:
    void downloadingFirst(double percents);
    void doneDownloadedConvert();
    void doneConvert();
    void cancelProcess();
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
    std::unique_ptr<ArchiveRun> m_run; ///< none once it has ended
};
