// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/textreply.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>
#include <QUrlQuery>

namespace {

struct TextReply
{
    Q_DECLARE_TR_FUNCTIONS(TextReply)
};

int httpStatus(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QString statusText(const QNetworkReply &reply)
{
    const int status = httpStatus(reply);
    if (status >= 200 && status < 300)
        return {};
    if (status >= 300 && status < 400)
        return TextReply::tr("The service answered with a redirect, which is not followed.");
    return TextReply::tr("The service answered with the unexpected HTTP status %1.").arg(status);
}

QString escaped(QString value)
{
    return value.replace(u'%', QLatin1String("%25")).replace(u'+', QLatin1String("%2B"));
}

/// Gathers the beginning of one reply's body; a child of the reply.
class TextCollector final : public QObject
{
public:
    TextCollector(QNetworkReply *reply, const QObject *context, qint64 maxBytes,
                  std::function<void(const TextAnswer &)> handler)
        : QObject(reply)
        , m_reply(reply)
        , m_maxBytes(maxBytes)
        , m_handler(std::move(handler))
    {
        reply->setReadBufferSize(m_maxBytes);
        connect(reply, &QNetworkReply::readyRead, this, &TextCollector::read);
        connect(reply, &QNetworkReply::finished, this, &TextCollector::finish);
        connect(context, &QObject::destroyed, this, &TextCollector::abort);
    }

private:
    void abort()
    {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

    void read()
    {
        m_body += m_reply->read(m_maxBytes - m_body.size());
        if (m_body.size() < m_maxBytes)
            return;
        // The rest is not even fetched.
        m_isCut = true;
        m_reply->abort();
    }

    void finish()
    {
        if (!m_isCut && m_reply->isOpen())
            m_body += m_reply->read(m_maxBytes - m_body.size());
        // After a cut the reply's error is our own abort, not an answer of the service.
        const QString error = m_isCut ? statusText(*m_reply) : failureText(*m_reply);
        const int status = httpStatus(*m_reply);
        m_reply->deleteLater();
        // A local copy, since the handler may delete the reply and with it this object.
        const auto handler = std::move(m_handler);
        handler({error, QString::fromUtf8(m_body), status});
    }

    QNetworkReply *const m_reply;
    const qint64 m_maxBytes;
    std::function<void(const TextAnswer &)> m_handler;
    QByteArray m_body;
    bool m_isCut = false;
};

} // namespace

QByteArray formBody(const FormFields &fields)
{
    QUrlQuery query;
    for (const auto &[name, value] : fields)
        query.addQueryItem(name, escaped(value));
    return query.toString(QUrl::FullyEncoded).toUtf8();
}

QNetworkRequest plainRequest(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QNetworkRequest formRequest(const QUrl &url)
{
    QNetworkRequest request = plainRequest(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QStringLiteral("application/x-www-form-urlencoded"));
    return request;
}

QNetworkRequest withSession(QNetworkRequest request, const QString &hash)
{
    // Otherwise a cookie that the service has set would replace this one.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    // A hash comes from outside: encoded it can begin neither another cookie nor another header.
    if (!hash.isEmpty())
        request.setRawHeader("Cookie", "teko-session=" + QUrl::toPercentEncoding(hash));
    return request;
}

QString failureText(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return statusText(reply);
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::UnknownNetworkError: // whose text says no more than its name
        return TextReply::tr("The connection was closed before the service answered.");
    case QNetworkReply::ProtocolUnknownError:
        return TextReply::tr("There is no processing service to send the request to.");
    default:
        return reply.errorString();
    }
}

void collectText(QNetworkReply *reply, QObject *context,
                 std::function<void(const TextAnswer &)> handler, qint64 maxBytes)
{
    new TextCollector(reply, context, maxBytes, std::move(handler));
}

bool waitForFinished(QNetworkReply *reply, const QObject *context,
                     std::optional<std::chrono::milliseconds> timeout)
{
    const QPointer<QNetworkReply> guard(reply);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QObject::destroyed, &loop, &QEventLoop::quit);
    QObject::connect(context, &QObject::destroyed, &loop, &QEventLoop::quit);
    if (timeout)
        QTimer::singleShot(*timeout, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    return guard && guard->isFinished();
}

TextAnswer waitForText(QNetworkReply *reply, const QObject *context)
{
    TextAnswer answer{TextReply::tr("The request was interrupted."), {}};
    QObject waiting; // destroying it aborts the reply
    collectText(reply, &waiting, [&answer](const TextAnswer &received) { answer = received; });
    waitForFinished(reply, context);
    return answer;
}
