// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/viewwindow.h"
#include "processing/processingrun.h"
#include "processing/processingview.h"
#include "processing/runintaskbar.h"
#include "results/resultmemory.h"
#include "service/tekoserver.h"

#include <chrono>
#include <memory>
#include <optional>

class ProgramData;

/// The processing window: takes one media file at a time through the choice of instrument and
/// format, conversion, upload, separation, download and final conversion. Its view's property
/// "currentLayer" is the state; every failure is shown in a message box and leads back to
/// "select_instrument". Late signals of a run that has ended are ignored. GUI thread only.
class FileProcessing final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit FileProcessing(ProgramData &store);

    /// Shows the window for a file, under a busy overlay until the service was checked, which runs
    /// a nested event loop. When offline, reports that and emits showParent(). Returns whether the
    /// window is open for that file and the user has done nothing else meanwhile.
    bool openWindow(const QString &path);

    /// Deletes the temporary WAV file of the last source, here and at the service, if there is one.
    /// Waits for that and for what the service still has to answer to an aborted run, at most for
    /// the timeout; without one, for what the end of the program may take.
    void removeUploadedFile(std::optional<std::chrono::milliseconds> timeout = {});
    /// The same without waiting, for a user who signs out: sent with the session that is ending.
    void forgetUploadedFile();

    /// The result paths of the current run; empty before the service reported them ready.
    [[nodiscard]] ResultPaths results() const { return m_run ? m_run->results() : ResultPaths(); }

signals:
    /// The user wants to choose another file.
    void openAnotherFile();
    /// The window has closed.
    void showParent();
    /// The window is open for a file.
    void loaded();
    /// The view resets its estimate for a new run.
    void resetProccesing();
    /// The view asks for another file.
    void forceProcessAnotherFile();
    /// The view changes to that layer after its delay.
    void changeLayerWithDelay(QString layer);

    // A slot that continues a run does nothing when there is none.
public slots:
    /// The WAV file for the upload is made, or missing after a failure.
    void doneUploadConverting();
    /// Starts a run with the view's choices.
    void startProcess();
    /// Closes the window.
    void cancel();
    /// Ends the run and shows the message.
    void showError(QString message);
    /// The progress of the upload.
    void progressPercents(double percent);
    /// The service accepted the job under that number.
    void savedWithId(int id);
    /// The results can be downloaded.
    void filesReady();
    /// The service's answer to getRemainsSeconds().
    void remainSeconds(int seconds);
    /// Asks the service how long the job still takes.
    void getRemainsSeconds();
    /// The progress of the first and the second download.
    void downloadingFirst(double percents);
    void downloadingSecond(double percents);
    /// The instrument is converted, or missing after a failure; converts the mix.
    void finalConvertMix();
    /// The mix is converted, or missing after a failure.
    void successProcces();
    /// Opens a result or its folder; type is as for openResult().
    void openFinalFiles(QString type);
    /// Returns to the choice of the instrument and lets the user choose another file.
    void proceedAnotherFile();
    /// Returns to the choice of the instrument for the same file.
    void proceedAnotherInstrument();
    /// Cancels the run here and at the service.
    void cancelProcess();
    /// Checks the daily limit; when it is reached, reports that and closes the window.
    void checkRemains();
    /// Processes an earlier demo in full; number is the service's number of that job.
    void runFromDemo(QString instrument, QString extension, int number);

protected:
    void windowClosed() override;

private:
    void connectServer();
    void connectRoot();
    void beginRun();
    /// Ends the run with a message when results or temporary files cannot be written.
    [[nodiscard]] bool hasUsableFolders();
    /// Also when ffmpeg is needed and missing.
    [[nodiscard]] bool canRun(bool isSourceSent);
    void prepareUpload();
    void continueWithWav();
    void pictureProbed(bool hasPicture);
    void send();
    void downloaded(bool isSecond, double percents);
    void finalConvert();
    void saveDownloads();
    /// Ends the run and shows why.
    void refuse(const QString &title, const QString &text);

    ProgramData &m_store;
    ResultMemory m_memory;
    TekoServer m_server;
    ProcessingView m_view;
    RunInTaskbar m_taskbar;
    Source m_source;
    std::unique_ptr<ProcessingRun> m_run; ///< null after a run ended, unless it succeeded
    std::unique_ptr<QObject> m_opening; ///< reset when the opening is superseded
};
