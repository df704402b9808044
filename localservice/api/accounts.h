// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/caller.h"
#include "localservice/api/subscription.h"

namespace localservice {

/// The requests about accounts. Each takes a form and gives the text of the reply, or throws
/// Refusal with the sentence that is the reply. Thread-safe.
class Accounts final
{
public:
    /// `keepDays` is how long results are kept, for the dates in the archive.
    Accounts(AccountStore &accounts, JobStore &jobs, Gate &gate, const Licence &licence,
             int keepDays);

    [[nodiscard]] std::string login(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string registerAccount(const Fields &fields, const Caller &caller);
    /// Without the field "code" a recovery code is written to the log; with it and "password" the
    /// code is used up for a new password.
    [[nodiscard]] std::string recover(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string check(const Fields &fields, const Caller &caller);
    /// Ends the session, but for the one that localSession() gives.
    [[nodiscard]] std::string logout(const Fields &fields, const Caller &caller);
    /// Counts as a try when the e-mail address or the password changes.
    [[nodiscard]] std::string update(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string archive(const Fields &fields, const Caller &caller);

private:
    [[nodiscard]] std::string userJson(const Account &account, const std::string &hash) const;
    void countTry(const std::string &email, const Caller &caller);

    AccountStore &m_accounts;
    JobStore &m_jobs;
    Gate &m_gate;
    Licence m_licence;
    int m_keepDays;
    RateLimiter m_tries{10};
};

} // namespace localservice
