// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/authorizer.h"
#include "localservice/api/licence.h"
#include "localservice/api/signinguard.h"

#include <Poco/JSON/Object.h>

#include <mutex>

namespace localservice {

/// The requests about accounts. Each takes a form and returns the text of the reply, or throws
/// Refusal with the sentence that is the reply. Thread-safe.
class Accounts final
{
public:
    /// `keepDays` is how long results are kept, for the dates in the archive.
    Accounts(AccountStore &accounts, JobStore &jobs, Authorizer &authorizer, const Licence &licence,
             int keepDays);

    [[nodiscard]] std::string login(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string registerAccount(const Fields &fields, const RequestContext &context);
    /// Without the field "code" a recovery code is written to the log; with it and "password" the
    /// code is used up for a new password.
    [[nodiscard]] std::string recover(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string check(const Fields &fields, const RequestContext &context);
    /// Ends the session, but for the one that localSession() returns.
    [[nodiscard]] std::string logout(const Fields &fields, const RequestContext &context);
    /// A change of the e-mail address or the password needs the field "oldPassword".
    [[nodiscard]] std::string update(const Fields &fields, const RequestContext &context);
    /// The newest 1000 results, as far as they fit into 1 MiB.
    [[nodiscard]] std::string archive(const Fields &fields, const RequestContext &context);

private:
    [[nodiscard]] Poco::JSON::Object archiveRecord(const Job &job) const;
    [[nodiscard]] std::string userJson(const Account &account, const std::string &hash) const;
    /// Registrations and changes reveal whether an address is taken, so they are limited.
    void countChange(const RequestContext &context);
    void requirePassword(const Account &account, const std::string &password,
                         const RequestContext &context);

    AccountStore &m_accounts;
    JobStore &m_jobs;
    Authorizer &m_authorizer;
    Licence m_licence;
    int m_keepDays;
    SignInGuard m_guard;
    RateLimiter m_changes{10};
    RateLimiter m_recoveries{30};
    std::mutex m_archiveMutex;
};

} // namespace localservice
