// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <utility>

class QNetworkReply;
class QNetworkRequest;
class QUrl;

/// What a short request brought.
struct TextAnswer
{
    QString error; ///< why there is no answer; empty: the service has answered
    QString body; ///< the answer's text, or as much of it as is worth keeping
};

/// More than any short answer of the service has.
inline constexpr qint64 mostTextBytes = 0x10000;

using FormFields = QList<std::pair<QString, QString>>;

/// The fields as the body of an "application/x-www-form-urlencoded" request. A plus and a percent
/// sign in a value are escaped as well, so that every receiver reads the value as it was.
[[nodiscard]] QByteArray formBody(const FormFields &fields);

/// A request that is never redirected and stays on HTTP/1.1.
[[nodiscard]] QNetworkRequest plainRequest(const QUrl &url);
/// plainRequest() with the content type of formBody().
[[nodiscard]] QNetworkRequest formRequest(const QUrl &url);
/// The request with a cookie that states the session of that hash, unless the hash is empty.
/// Other cookies are not sent with it.
[[nodiscard]] QNetworkRequest withSession(QNetworkRequest request, const QString &hash);

/// Why a finished reply is a failure, for the user; empty when it is none. An answer other than
/// 2xx is always one, a redirect and a reply that is no HTTP included.
[[nodiscard]] QString failureText(const QNetworkReply &reply);

/// Reads a reply while it arrives, at most so many bytes of it, then calls the handler once, on
/// this thread. The handler is not called when the context or the reply dies first. The reply
/// deletes itself after it.
void collectText(QNetworkReply *reply, QObject *context,
                 std::function<void(const TextAnswer &)> handler, qint64 mostBytes = mostTextBytes);

/// Waits in a local event loop, without a time limit, until the reply has finished or is gone or
/// the program quits, which are failures. True: finished. The reply stays the caller's.
[[nodiscard]] bool waitForFinished(QNetworkReply *reply);

/// collectText() for a caller that waits, in the same way. The caller must expect that its own
/// object may be gone afterwards.
[[nodiscard]] TextAnswer waitForText(QNetworkReply *reply);
