// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/filefetch.h"

#include "service/replies.h"
#include "service/textreply.h"

#include <QDebug>
#include <QDir>
#include <QNetworkReply>

namespace {

constexpr qint64 stepSize = 256LL * 1024;
/// The limit of the reply's read buffer: bounds the memory used, at some cost in speed.
constexpr qint64 maxBuffered = 4LL * 1024 * 1024;

bool isWebUrl(const QUrl &url)
{
    const QString scheme = url.scheme();
    // A user name and a password would show in boxes and logs.
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && !url.host().isEmpty() && url.userInfo().isEmpty();
}

} // namespace

FileFetch::FileFetch(const QString &path, qint64 expectedSize, QObject *parent)
    : QObject(parent)
    , m_expectedSize(expectedSize)
    , m_file(path)
{ }

FileFetch::~FileFetch()
{
    // The manager deletes the reply, which must no longer reach this half-destroyed object.
    if (m_reply)
        m_reply->disconnect(this);
}

void FileFetch::start(const QUrl &url)
{
    if (!isWebUrl(url)) {
        const QString reason = tr("The service returned no usable address for the file.");
        QMetaObject::invokeMethod(
            this, [this, reason] { failDownload(reason); }, Qt::QueuedConnection);
        return;
    }
    if (!m_file.open(QIODevice::WriteOnly)) {
        QMetaObject::invokeMethod(this, &FileFetch::failOpening, Qt::QueuedConnection);
        return;
    }
    m_buffer.resize(stepSize);
    QNetworkRequest request = plainRequest(url);
    // Allowed here, where no session is sent: results may be on another host.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setRawHeader("Accept-Encoding", "identity");
    m_reply = m_network.get(request);
    m_reply->setReadBufferSize(maxBuffered);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &FileFetch::reportProgress);
    connect(m_reply, &QNetworkReply::readyRead, this, &FileFetch::readAvailable);
    connect(m_reply, &QNetworkReply::finished, this, &FileFetch::finish);
}

void FileFetch::reportProgress(qint64 received, qint64 total)
{
    // An error page is no part of the file.
    if (!m_isOver && status() == 200)
        emit progress(downloadPercent(received, total, m_expectedSize));
}

void FileFetch::readAvailable()
{
    while (!m_isOver && m_reply->bytesAvailable() > 0) {
        const qint64 got = m_reply->read(m_buffer.data(), m_buffer.size());
        if (got <= 0)
            return;
        m_received += got;
        if (!store(got))
            failDownload(m_file.errorString());
    }
}

bool FileFetch::store(qint64 size)
{
    // On a nearly full disk a write may be partial without an error; only the next one reports why.
    qint64 stored = 0;
    while (stored < size) {
        const qint64 taken = m_file.write(m_buffer.constData() + stored, size - stored);
        if (taken <= 0)
            return false;
        stored += taken;
    }
    return true;
}

void FileFetch::finish()
{
    if (m_isOver)
        return;
    if (const QString problem = arrivalProblem(); !problem.isEmpty())
        return failDownload(problem);
    readAvailable();
    if (!m_isOver)
        commit();
}

QString FileFetch::arrivalProblem() const
{
    if (QString failure = failureText(*m_reply); !failure.isEmpty())
        return failure;
    const QByteArray encoding = m_reply->rawHeader("Content-Encoding");
    if (!encoding.isEmpty() && encoding.compare("identity", Qt::CaseInsensitive) != 0)
        return tr("The file arrived in an encoding that was not asked for.");
    return isWhole() ? QString() : tr("The file did not arrive whole.");
}

int FileFetch::status() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool FileFetch::isWhole() const
{
    // Qt treats a malformed length or chunk as the end of the body, without an error.
    const qint64 arrived = m_received + m_reply->bytesAvailable();
    if (status() != 200 || arrived == 0)
        return false;
    const QByteArray announced = m_reply->rawHeader("Content-Length");
    return announced.isEmpty() || announced == QByteArray::number(arrived);
}

void FileFetch::commit()
{
    // In Qt 6.4 commit() alone does not report a disk that is full (QTBUG-75077); flush() does.
    if (!m_file.flush() || !m_file.commit())
        return failDownload(m_file.errorString());
    stop();
    emit progress(100);
}

void FileFetch::failOpening()
{
    fail(tr("Failed to open file for writing:\n\n%1")
             .arg(QDir::toNativeSeparators(m_file.fileName())));
}

void FileFetch::failDownload(const QString &reason)
{
    const QString text = truncatedForDisplay(reason);
    qInfo().noquote() << "Download error:" << text;
    fail(tr("Download error:\n\n") + text);
}

void FileFetch::fail(const QString &message)
{
    discard();
    stop();
    emit failed(message);
}

void FileFetch::abort()
{
    disconnect();
    if (m_isOver)
        return;
    discard();
    stop();
}

void FileFetch::discard()
{
    if (!m_file.isOpen())
        return;
    m_file.cancelWriting();
    m_file.commit(); // removes what was written
}

void FileFetch::stop()
{
    m_isOver = true;
    if (m_reply && m_reply->isRunning())
        m_reply->abort();
    deleteLater();
}
