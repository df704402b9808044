// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/textreply.h"

#include <QNetworkAccessManager>
#include <QPointer>

#include <chrono>
#include <memory>
#include <optional>

class FrozenFile;
class ProgramData;
class QNetworkReply;

/// The HTTP client of the processing service. Every result comes through a signal, on this thread;
/// requests that are still open when the object is destroyed are aborted silently. Nothing is
/// retried, and only calls with a timeout parameter have a time limit.
class TekoServer final : public QObject
{
    Q_OBJECT

public:
    /// Asks the store at each request where the service is and which credentials to send.
    /// The store must outlive this object; the owner deletes this object.
    explicit TekoServer(ProgramData &store);

    /// Uploads a WAV file for processing. A file that cannot be opened sends and emits nothing,
    /// it only sets errorText(). Version is "full" or "demo".
    void uploadFile(const QString &instrument, const QString &filePath, const QString &fileName,
                    const QString &hash, const QString &version, const QString &originalFilePath,
                    const QString &extension);
    /// Asks for another processing of a file that the service already holds.
    void repeatFile(const QString &instrument, const QString &uploadedFileName,
                    const QString &fileName, const QString &hash, const QString &version,
                    const QString &originalFilePath, const QString &extension);
    /// Asks for the whole of a file that was processed as a demo.
    void repeatDemoFile(const QString &hash, const QString &extension, int songId);

    /// Asks how long the job still takes: emits remainSeconds() or filesReady().
    void remains(int songId);
    /// Cancels a job. The answer is only logged.
    void cancel(int songId);

    /// Fetches one result, the mix when second is true; reports through downloadingFirst() in
    /// both cases. A file that is already at the path is removed at once.
    void download(int songId, const QString &path, bool second);
    /// Fetches both results at once. The expected size in bytes is used only for the percentages.
    void downloadBoth(int songId, const QString &firstPath, const QString &secondPath,
                      qint64 expectedSize);

    /// Aborts all requests except cancels and removals; emits nothing for them afterwards, and
    /// partial downloads are removed from disk. A job that the service accepts nevertheless, since
    /// it already had the whole request, is cancelled when its number arrives, and its upload is
    /// removed.
    void abort();

    /// Asks the service to delete an uploaded file. The answer is only logged.
    void requestRemoval(const QString &fileName);
    /// requestRemoval() that waits for the answer in a local event loop while the context lives:
    /// the caller must expect that its own object may be gone afterwards.
    void removeUploaded(const QString &fileName, const QObject *context);
    /// Waits in the same way until the service has answered all removals and cancels, and the jobs
    /// that abort() left to be cancelled, at most for the timeout.
    void waitForLastAnswers(const QObject *context, std::chrono::milliseconds timeout);
    /// The files that may still be processed today; -1 when the service does not say. Waits in the
    /// same way.
    [[nodiscard]] int processedFilesRemains(const QString &hash, const QObject *context);

    /// Why the last uploadFile() sent nothing; empty when it did.
    [[nodiscard]] const QString &errorText() const { return m_errorText; }
    /// Whether the service itself refused the last job; otherwise its answer never arrived.
    [[nodiscard]] bool isJobRefused() const { return m_isJobRefused; }
    /// For checks of whether the service can be reached.
    [[nodiscard]] QNetworkAccessManager &networkAccess() { return *m_network; }

signals:
    void progressPercents(double percent);
    /// A failure or a refusal, with a text for the user that is to be shown as plain text.
    void showError(const QString &message);
    void remainSeconds(int seconds);
    /// The service accepted the upload or re-process request as this job.
    void savedWithId(int songId);
    void filesReady();
    /// Percentages of the results; 100 when the file is written.
    void downloadingFirst(double percent);
    void downloadingSecond(double percent);

private:
    struct JobTexts;
    struct FetchTarget;
    using Progress = void (TekoServer::*)(double);

    static const JobTexts uploadTexts;
    static const JobTexts repeatTexts;
    static const JobTexts demoTexts;

    QNetworkReply *post(const char *path, const FormFields &fields);
    /// Has waitForLastAnswers() wait for it.
    void keepOpen(QNetworkReply *reply);
    void ignoreSslErrorsOfCurrent();

    void reportUpload(qint64 sent, qint64 total);
    void expectJob(QNetworkReply *reply, const JobTexts &texts);
    void jobAnswered(const JobTexts &texts, const TextAnswer &answer);
    void jobAnsweredAfterAbort(const JobTexts &texts, const TextAnswer &answer,
                               const QString &uploadedFile);
    void remainsAnswered(const TextAnswer &answer);
    void askForResults(int songId, const QList<FetchTarget> &targets);
    void fetchResults(const TextAnswer &answer, const QList<FetchTarget> &targets);
    void failed(const char *label, const TextAnswer &answer);

    ProgramData &m_store;
    QString m_errorText;
    bool m_isJobRefused = false;
    QNetworkAccessManager *const m_network;
    QPointer<QNetworkReply> m_currentReply;
    QList<QPointer<QNetworkReply>> m_lastAnswers; ///< what is open at the end must still come
    QPointer<FrozenFile> m_source; ///< of the upload that is being sent
    std::unique_ptr<QObject> m_requests; ///< context of open requests; resetting it aborts them
};
