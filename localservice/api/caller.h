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
    std::string session; ///< the session that its cookie states; "" when it has none
};

/// The session that a request states: by the field "hash", and by the cookie where that is empty.
/// "": none.
[[nodiscard]] const std::string &sessionOf(const Fields &fields, const Caller &caller);

/// Finds out who asks, and which of the jobs he may know about.
class Gate final
{
public:
    Gate(AccountStore &accounts, JobStore &jobs)
        : m_accounts(accounts)
        , m_jobs(jobs)
    { }

    /// The account of the request's session; a field "accessToken", when it is not empty, must
    /// belong to the session. Throws Refusal.
    [[nodiscard]] Account require(const Fields &fields, const Caller &caller);
    /// The account of a session. Throws Refusal.
    [[nodiscard]] Account requireSession(const std::string &session);
    /// The job that a field names, which must belong to the account of the request. Throws Refusal.
    [[nodiscard]] Job requireJob(const Fields &fields, std::string_view field,
                                 const Caller &caller);

private:
    AccountStore &m_accounts;
    JobStore &m_jobs;
    RateLimiter m_wrongNumbers{60};
};

} // namespace localservice
