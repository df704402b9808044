// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/httpanswer.h"

#include <QAbstractSocket>
#include <QElapsedTimer>
#include <QNetworkReply>

class QTcpSocket;

/// A POST over HTTP/1.1 on a connection of its own, which reads its body from a device while it
/// sends and is sent once, whatever happens. An answer that is whole before the body's end counts:
/// the rest of the body is not sent. Redirects are not followed, proxies are not asked, there is no
/// time limit, and cookies are those of the request's headers. The end is told from the event loop,
/// also after abort().
class UploadReply final : public QNetworkReply
{
    Q_OBJECT

public:
    /// The request's URL is of http or https. The body is open, knows its size, and must live as
    /// long as this reply runs. The work begins when this thread's event loop runs.
    UploadReply(const QNetworkRequest &request, QIODevice &body, QObject *parent);

    void abort() override;
    void ignoreSslErrors() override;
    void setReadBufferSize(qint64 size) override;
    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void start();
    void sendHead();
    [[nodiscard]] qint64 waitingBytes() const;
    void sendBody();
    void reportSent(qint64 bytes);
    void reportProgress();
    void readAnswer();
    void readMore();
    void takeAnswer(const QByteArray &bytes);
    void showHead();
    void endConnection(QAbstractSocket::SocketError reason);
    void finishWhole();
    void fail(NetworkError error, const QString &text);
    void finish();
    void tellEnd();

    QIODevice &m_body;
    const qint64 m_size; ///< of the body
    QTcpSocket *m_socket = nullptr;
    qint64 m_read = 0; ///< bytes of the body given to the socket
    qint64 m_sent = 0; ///< bytes given to the system, of which the head's do not count
    QElapsedTimer m_sinceProgress;
    HttpAnswer m_answer;
    QByteArray m_arrived; ///< of the answer's body, not yet read by the user of this reply
    bool m_ignoresSslErrors = false;
};
