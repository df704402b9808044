// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QSaveFile>

class QNetworkReply;

/// Fetches one URL into one file, which gets its name only when it is complete; a failed or aborted
/// fetch leaves no file. Deletes itself after the last signal; deleting it earlier aborts the
/// fetch.
class FileFetch final : public QObject
{
    Q_OBJECT

public:
    /// The expected size in bytes is used only for the percentage; -1: unknown.
    FileFetch(const QString &path, qint64 expectedSize, QObject *parent);
    ~FileFetch() override;

    /// Fetches from an http or https URL, following redirects except from https to http. Emits
    /// nothing before it has returned.
    void start(const QUrl &url);
    /// Aborts the fetch without a further signal and removes the partial file. May be called from a
    /// slot connected to this object.
    void abort();

signals:
    /// 0 to 99.8 while the file is being received, and 100 once it has its name.
    void progress(double percent);
    /// The fetch has failed, with a text for the user.
    void failed(const QString &message);

private:
    void reportProgress(qint64 received, qint64 total);
    void readAvailable();
    [[nodiscard]] bool store(qint64 size);
    void finish();
    [[nodiscard]] QString arrivalProblem() const;
    [[nodiscard]] int status() const;
    [[nodiscard]] bool isWhole() const;
    void commit();
    void failOpening();
    void fail(const QString &message);
    void failDownload(const QString &reason);
    void discard();
    void stop();

    const qint64 m_expectedSize;
    QSaveFile m_file;
    QNetworkAccessManager m_network;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_buffer;
    qint64 m_received = 0;
    bool m_isOver = false;
};
