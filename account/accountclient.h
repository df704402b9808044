// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/textreply.h"

#include <QNetworkAccessManager>

#include <chrono>
#include <memory>

class ProgramData;

/// The outcome of an account request.
struct AccountAnswer
{
    enum class Kind {
        Answered, ///< the service has answered, with success or a refusal
        Offline, ///< the service cannot be reached
        Failed ///< the request was sent, but there is no answer
    };
    Kind kind = Kind::Failed;
    QString text; ///< the answer's body, or an error message for the user
};

/// Sends account requests: checks first whether the service can be reached, and adds the access
/// credentials. GUI thread only.
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

    /// Posts the fields to a path under "/teko-server/" and calls the handler once, later, from the
    /// event loop. The handler is not called after the context or this object was destroyed or
    /// abort() was called. At most maxBytes of the answer are read.
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
    std::unique_ptr<QObject> m_requests; ///< context of open requests; resetting it aborts them
    QString m_lastLoggedOutcome; ///< to log repeated outcomes only once
};
