// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/uploadreply.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QSslSocket>

#include <cstring>

namespace {

/// One step from the body to the socket. Qt's own manager takes 16 kB steps and waits for another
/// thread at each, which makes an upload to a near machine ten times slower.
constexpr qint64 stepSize = 256LL * 1024;
constexpr qint64 mostWaiting = 2 * stepSize;
constexpr qint64 progressInterval = 100; // ms

bool isEncrypted(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

QByteArray hostHeader(const QUrl &url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    return url.port() < 0 ? host : host + ':' + QByteArray::number(url.port());
}

QByteArray requestHead(const QNetworkRequest &request, qint64 bodySize)
{
    QByteArray target = request.url().path(QUrl::FullyEncoded).toLatin1();
    if (request.url().hasQuery())
        target += '?' + request.url().query(QUrl::FullyEncoded).toLatin1();
    QByteArray head = "POST " + target + " HTTP/1.1\r\nHost: " + hostHeader(request.url())
        + "\r\nContent-Length: " + QByteArray::number(bodySize)
        + "\r\nConnection: close\r\nAccept-Encoding: identity\r\n";
    // As Qt's manager says: some gateways turn away who does not say what he is.
    if (!request.hasRawHeader("User-Agent"))
        head += "User-Agent: Mozilla/5.0\r\n";
    const auto names = request.rawHeaderList();
    for (const QByteArray &name : names) {
        const QByteArray value = request.rawHeader(name);
        if (!value.contains('\r') && !value.contains('\n'))
            head += name + ": " + value + "\r\n";
    }
    return head + "\r\n";
}

QNetworkReply::NetworkError replyError(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return QNetworkReply::ConnectionRefusedError;
    case QAbstractSocket::RemoteHostClosedError:
        return QNetworkReply::RemoteHostClosedError;
    case QAbstractSocket::HostNotFoundError:
        return QNetworkReply::HostNotFoundError;
    case QAbstractSocket::SocketTimeoutError:
        return QNetworkReply::TimeoutError;
    case QAbstractSocket::SslHandshakeFailedError:
        return QNetworkReply::SslHandshakeFailedError;
    default:
        return QNetworkReply::UnknownNetworkError;
    }
}

} // namespace

UploadReply::UploadReply(const QNetworkRequest &request, QIODevice &body, QObject *parent)
    : QNetworkReply(parent)
    , m_body(body)
    , m_size(body.size())
{
    setRequest(request);
    setUrl(request.url());
    setOperation(QNetworkAccessManager::PostOperation);
    QIODevice::open(ReadOnly | Unbuffered);
    QMetaObject::invokeMethod(this, &UploadReply::start, Qt::QueuedConnection);
}

void UploadReply::start()
{
    if (isFinished())
        return;
    const QUrl target = url();
    auto *secure = isEncrypted(target) ? new QSslSocket(this) : nullptr;
    m_socket = secure ? secure : new QTcpSocket(this);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &UploadReply::reportSent);
    connect(m_socket, &QTcpSocket::readyRead, this, &UploadReply::readAnswer);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &UploadReply::endConnection);
    m_socket->setReadBufferSize(readBufferSize());
    m_socket->setProxy(QNetworkProxy::NoProxy);
    if (!secure) {
        connect(m_socket, &QTcpSocket::connected, this, &UploadReply::sendHead);
        m_socket->connectToHost(target.host(), quint16(target.port(80)));
        return;
    }
    connect(secure, &QSslSocket::encrypted, this, &UploadReply::sendHead);
    connect(secure, &QSslSocket::encryptedBytesWritten, this, [this] {
        if (m_read > 0)
            sendBody();
    });
    connect(secure, &QSslSocket::sslErrors, this, [this, secure](const QList<QSslError> &errors) {
        // Only now: connecting forgets an earlier wish.
        if (m_ignoresSslErrors)
            secure->ignoreSslErrors();
        emit sslErrors(errors);
    });
    secure->setSslConfiguration(request().sslConfiguration());
    secure->connectToHostEncrypted(target.host(), quint16(target.port(443)));
}

void UploadReply::sendHead()
{
    const QByteArray head = requestHead(request(), m_size);
    m_sent = -head.size();
    m_socket->write(head);
    sendBody();
}

qint64 UploadReply::waitingBytes() const
{
    const auto *secure = qobject_cast<QSslSocket *>(m_socket);
    return m_socket->bytesToWrite() + (secure ? secure->encryptedBytesToWrite() : 0);
}

void UploadReply::sendBody()
{
    while (!isFinished() && m_read < m_size && waitingBytes() < mostWaiting) {
        const QByteArray step = m_body.read(qMin(stepSize, m_size - m_read));
        if (step.isEmpty()) {
            fail(UnknownContentError, tr("The file could not be read to its end."));
            return;
        }
        m_read += step.size();
        m_socket->write(step);
    }
}

void UploadReply::reportSent(qint64 bytes)
{
    m_sent += bytes;
    sendBody();
    if (!isFinished() && !m_answer.hasHead())
        reportProgress();
}

void UploadReply::reportProgress()
{
    const bool isDue = m_sent == m_size || !m_sinceProgress.isValid()
        || m_sinceProgress.hasExpired(progressInterval);
    if (m_sent <= 0 || !isDue)
        return;
    m_sinceProgress.start();
    emit uploadProgress(m_sent, m_size);
}

void UploadReply::readAnswer()
{
    const qint64 room = readBufferSize() - m_arrived.size();
    takeAnswer(readBufferSize() == 0 ? m_socket->readAll() : m_socket->read(qMax<qint64>(room, 0)));
}

void UploadReply::takeAnswer(const QByteArray &bytes)
{
    const bool hadHead = m_answer.hasHead();
    const QByteArray body = m_answer.take(bytes);
    m_arrived += body;
    if (m_answer.isBroken())
        return fail(ProtocolFailure, tr("The service gave an answer that is no HTTP."));
    if (m_answer.hasHead() && !hadHead)
        showHead();
    if (m_answer.isWhole())
        return finishWhole();
    if (!body.isEmpty())
        emit readyRead();
}

void UploadReply::showHead()
{
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, m_answer.status());
    for (const auto &[name, value] : m_answer.headers())
        setRawHeader(name, value);
    emit metaDataChanged();
}

void UploadReply::endConnection(QAbstractSocket::SocketError reason)
{
    takeAnswer(m_socket->readAll());
    if (isFinished())
        return;
    if (reason != QAbstractSocket::RemoteHostClosedError)
        return fail(replyError(reason), m_socket->errorString());
    m_answer.end();
    if (m_answer.isWhole())
        return finishWhole();
    fail(RemoteHostClosedError, tr("The connection was closed before the service answered."));
}

void UploadReply::finishWhole()
{
    const int status = m_answer.status();
    if (status < 400)
        return finish();
    // The words of Qt's manager, since the other requests fail with them.
    const QString text =
        QCoreApplication::translate("QHttp", "Error transferring %1 - server replied: %2");
    fail(status < 500 ? UnknownContentError : UnknownServerError,
         text.arg(url().toString(), QString::fromLatin1(m_answer.reason())));
}

void UploadReply::fail(NetworkError error, const QString &text)
{
    if (isFinished())
        return;
    setError(error, text);
    finish();
}

void UploadReply::finish()
{
    setFinished(true);
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->abort();
    }
    // Queued: who is told may delete this object, and with it the socket whose signal led here.
    QMetaObject::invokeMethod(this, &UploadReply::tellEnd, Qt::QueuedConnection);
}

void UploadReply::tellEnd()
{
    if (error() != NoError)
        emit errorOccurred(error());
    emit readChannelFinished();
    emit finished();
}

void UploadReply::abort()
{
    fail(OperationCanceledError, tr("The request was interrupted."));
}

void UploadReply::ignoreSslErrors()
{
    m_ignoresSslErrors = true;
    if (auto *secure = qobject_cast<QSslSocket *>(m_socket))
        secure->ignoreSslErrors();
}

void UploadReply::setReadBufferSize(qint64 size)
{
    QNetworkReply::setReadBufferSize(size);
    if (m_socket)
        m_socket->setReadBufferSize(size);
}

qint64 UploadReply::bytesAvailable() const
{
    return m_arrived.size() + QNetworkReply::bytesAvailable();
}

qint64 UploadReply::readData(char *data, qint64 maxSize)
{
    const qint64 count = qMin<qint64>(maxSize, m_arrived.size());
    std::memcpy(data, m_arrived.constData(), size_t(count));
    m_arrived.remove(0, count);
    if (!isFinished() && m_socket && m_socket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &UploadReply::readMore, Qt::QueuedConnection);
    return count > 0 || !isFinished() ? count : -1;
}

void UploadReply::readMore()
{
    if (!isFinished())
        readAnswer();
}
