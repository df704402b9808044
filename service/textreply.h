// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

class QNetworkReply;
class QNetworkRequest;
class QUrl;

/// The outcome of a short request.
struct TextAnswer
{
    QString error; ///< why there is no answer; empty: the service has answered
    QString body; ///< the answer's text, or as much of it as is worth keeping
    int status = 0; ///< of HTTP; 0: no answer arrived
};

/// The most bytes read of a short answer; no valid one is longer.
inline constexpr qint64 maxTextBytes = 0x10000;

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

/// Reads at most maxBytes of a reply while it arrives, then calls the handler once, on this
/// thread. When the context is destroyed first, the reply is aborted and the handler is not called.
/// The reply deletes itself in both cases.
void collectText(QNetworkReply *reply, QObject *context,
                 std::function<void(const TextAnswer &)> handler, qint64 maxBytes = maxTextBytes);

/// Waits in a local event loop and returns true when the reply has finished. Returns false when the
/// reply or the context is destroyed, the timeout expires or the program quits before that; the
/// reply then continues.
bool waitForFinished(QNetworkReply *reply, const QObject *context,
                     std::optional<std::chrono::milliseconds> timeout = {});

/// collectText() for a caller that waits in a local event loop, without a time limit. When the
/// context is destroyed or the program quits, the reply is aborted and an error returned. The
/// caller must expect that its own object may be gone afterwards.
[[nodiscard]] TextAnswer waitForText(QNetworkReply *reply, const QObject *context);
