// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QSaveFile>

class QNetworkReply;

/// Fetches one URL into one file, which takes its name only when it is whole; anything else leaves
/// nothing behind. Deletes itself after the last signal; deleting it earlier aborts the fetch.
class FileFetch final : public QObject
{
    Q_OBJECT

public:
    /// The expected size in bytes serves the percentage alone; -1 is unknown.
    FileFetch(const QString &path, qint64 expectedSize, QObject *parent);
    ~FileFetch() override;

    /// Fetches from an http or https URL, following redirects but from https to http. No signal
    /// comes before this has returned.
    void start(const QUrl &url);
    /// Ends the fetch without a further signal and leaves nothing behind. May be called from a slot
    /// of a signal of this object.
    void abort();

signals:
    /// 0 to 99.8 while the file arrives, and 100 once it has its name.
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
