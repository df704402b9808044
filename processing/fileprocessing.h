// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/viewwindow.h"
#include "results/resultnames.h"
#include "service/tekoserver.h"
#include "service/workerthread.h"

#include <atomic>
#include <memory>

class ConvertingFile;
class ProgramData;

/// The processing window: takes one media file at a time through the choice of instrument and
/// format, conversion, upload, separation, download and final conversion. Its view's property
/// "currentLayer" is the state; every failure is told in a message box and leads back to
/// "select_instrument". GUI thread only.
class FileProcessing final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit FileProcessing(ProgramData &store);
    ~FileProcessing() override;

    /// Shows the window for a file, after asking whether the service can be reached; while the
    /// answer is awaited the caller's event loop is nested. Offline it says so and emits
    /// showParent() instead. Gives whether the window stands there now for that file, with nothing
    /// done in it yet.
    bool openWindow(const QString &path);

    /// Deletes the temporary WAV file of the last source, here and at the service, if there is one.
    /// Waits for the service's answer.
    void removeUploadedFile();
    /// The same without waiting, for a user who signs out: it is still asked in his name.
    void forgetUploadedFile();

    /// Where the results of the current run go; empty before the service reported them ready.
    [[nodiscard]] const ResultPaths &results() const { return m_results; }

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
    void resetView(const QString &path);
    void resetRun();
    [[nodiscard]] bool isCancelled() const { return m_cancelState != 0; }
    [[nodiscard]] bool isBusy() const;
    /// Whether the service has reported the results of this run.
    [[nodiscard]] bool areResultsReady() const { return m_results != ResultPaths(); }
    [[nodiscard]] QString instrument() const;
    [[nodiscard]] QString extension() const;
    [[nodiscard]] QString runModeOfUser() const;
    void setLayer(const char *layer);
    void refuse(const QString &title, const QString &text);

    void prepareUpload();
    void repeatUploaded();
    void discardDownloads();
    void downloaded(int which, const char *property, double percents);
    void finalConvert();
    void moveDownloads();
    [[nodiscard]] std::unique_ptr<ConvertingFile> finalConverter(const QString &result,
                                                                 bool isMain);

    ProgramData &m_store;
    TekoServer m_server;
    WorkerThread m_worker;
    std::atomic<int> m_cancelState = 0;
    quint64 m_turn = 0; ///< tells the user's last wish from one that an opening still waits for
    QString m_sourcePath;
    QString m_tempWavPath;
    qint32 m_savedId = 0;
    bool m_isUploaded = false; ///< the service has told an id for the temporary WAV file
    ResultPaths m_results;
    double m_downloadPercent[2] = {0, 0};
};
