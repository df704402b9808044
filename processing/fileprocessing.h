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

class ProgramData;

/// The processing window: takes one media file at a time through the choice of instrument and
/// format, conversion, upload, separation, download and final conversion. Its view's property
/// "currentLayer" is the state; every failure is shown in a message box and leads back to
/// "select_instrument". What still comes of a run that has ended is ignored. GUI thread only.
class FileProcessing final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit FileProcessing(ProgramData &store);

    /// Shows the window for a file, covered until it is known whether the service can be reached;
    /// the caller's event loop is nested for so long. Offline it says so and emits showParent()
    /// instead. Returns whether the window is open for that file, with nothing done in it yet.
    bool openWindow(const QString &path);

    /// Deletes the temporary WAV file of the last source, here and at the service, if there is one.
    /// Waits for the service's answer, at most for the timeout.
    void removeUploadedFile(std::chrono::milliseconds timeout);
    /// The same without waiting, for a user who signs out: it is still asked on their behalf.
    void forgetUploadedFile();

    /// Where the results of the current run go; empty before the service reported them ready.
    [[nodiscard]] ResultPaths results() const { return m_run ? m_run->results() : ResultPaths(); }

signals:
    /// The user wants to choose another file.
    void openAnotherFile();
    /// The window has closed.
    void showParent();
    void loaded();
    void resetProccesing();
    void forceProcessAnotherFile();
    /// The view changes to that layer after its delay.
    void changeLayerWithDelay(QString layer);

public slots:
    void doneUploadConverting();
    void startProcess();
    void cancel();
    void showError(QString message);
    void progressPercents(double percent);
    void savedWithId(int id);
    void filesReady();
    void remainSeconds(int seconds);
    void getRemainsSeconds();
    void downloadingFirst(double percents);
    void downloadingSecond(double percents);
    void finalConvertMix();
    void successProcces();
    void openFinalFiles(QString type);
    void proceedAnotherFile();
    void proceedAnotherInstrument();
    void cancelProcess();
    void checkRemains();
    /// Runs an earlier demo run again; number is the service's id of that run.
    void runFromDemo(QString instrument, QString extension, int number);

protected:
    void windowClosed() override;

private:
    void connectServer();
    void connectRoot();
    void beginRun();
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
    std::unique_ptr<ProcessingRun> m_run; ///< none after an end, but for a success
    std::unique_ptr<QObject> m_opening; ///< gone once the user wants something else
};
