// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/textreply.h"

#include <QNetworkAccessManager>

#include <chrono>
#include <memory>

class ProgramData;

/// What a request of the account side brought.
struct AccountAnswer
{
    enum class Kind {
        Answered, ///< the service has answered, with success or a refusal
        Offline, ///< it could not be asked
        Failed ///< it was asked, but there is no answer
    };
    Kind kind = Kind::Failed;
    QString text; ///< the answer's body, or for the user why there is none
};

/// Sends the requests of the account side: asks first whether the service can be reached, adds the
/// access credentials, keeps the last answer's text. GUI thread only.
class AccountClient final : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const AccountAnswer &)>;

    /// The store must outlive this object. A connection that is silent for the given time counts as
    /// failed.
    explicit AccountClient(ProgramData &store,
                           std::chrono::milliseconds timeout = std::chrono::seconds(15),
                           QObject *parent = nullptr);
    ~AccountClient() override;

    /// Posts the fields to a path under "/teko-server/" and hands the answer over once, later, from
    /// the event loop. The handler is not called after the context or this object has died or
    /// abort() was called. Of a longer answer only so many bytes are read.
    void post(const QString &path, const FormFields &fields, QObject *context, Handler handler,
              qint64 maxBytes = maxTextBytes);

    /// post() for a caller that waits in a local event loop: it must expect that its own object may
    /// be gone afterwards.
    [[nodiscard]] AccountAnswer postAndWait(const QString &path, const FormFields &fields,
                                            qint64 maxBytes = maxTextBytes);

    /// Aborts all requests that are under way.
    void abort();

private:
    struct Request;

    [[nodiscard]] QString offlineText() const;
    void send(const std::shared_ptr<Request> &request);
    void finish(const Request &request, const AccountAnswer &answer);
    [[nodiscard]] FormFields withCredentials(FormFields fields) const;

    ProgramData &m_store;
    QNetworkAccessManager *const m_network;
    std::unique_ptr<QObject> m_requests; ///< whose death aborts them
    QString m_lastLoggedOutcome; ///< so that a repeated one is left out
};
