// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/ratelimiter.h"
#include "localservice/http/fields.h"
#include "localservice/store/accountstore.h"
#include "localservice/store/jobstore.h"

#include <string>

namespace localservice {

/// Where a request comes from, beside its form.
struct Caller
{
    std::string address; ///< the other computer, without the port
    std::string origin; ///< how it addresses this service: "http://host:port"
    std::string session; ///< the session of an earlier request, when it has come back as a cookie
};

/// Finds out who asks, and which of the jobs he may know about.
class Gate final
{
public:
    Gate(AccountStore &accounts, JobStore &jobs)
        : m_accounts(accounts)
        , m_jobs(jobs)
    { }

    /// The account of the field "hash"; a field "accessToken", when it is not empty, must belong to
    /// it. Throws Refusal.
    [[nodiscard]] Account require(const Fields &fields);
    /// The same by the field "hash" alone, for a client that asks for the token that belongs to it.
    [[nodiscard]] Account requireSession(const Fields &fields);
    /// The job that a field names. Without a session its number alone, which cannot be guessed,
    /// opens the door; with one the job must belong to that account. Throws Refusal.
    [[nodiscard]] Job requireJob(const Fields &fields, std::string_view field,
                                 const Caller &caller);
    /// The account of the request, if it names one by the field "hash" or by the cookie.
    [[nodiscard]] std::optional<Account> identify(const Fields &fields, const Caller &caller);

private:
    AccountStore &m_accounts;
    JobStore &m_jobs;
    RateLimiter m_wrongNumbers{60};
};

} // namespace localservice
