// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/ratelimiter.h"
#include "localservice/api/requestcontext.h"
#include "localservice/store/accountstore.h"
#include "localservice/store/jobstore.h"

namespace localservice {

/// Finds the account of a request, and checks which jobs it may know about.
class Authorizer final
{
public:
    Authorizer(AccountStore &accounts, JobStore &jobs)
        : m_accounts(accounts)
        , m_jobs(jobs)
    { }

    /// The account of the request's session; a field "accessToken", when it is not empty, must
    /// belong to the session. Throws Refusal.
    [[nodiscard]] Account require(const Fields &fields, const RequestContext &context);
    /// The account of a session. Throws Refusal.
    [[nodiscard]] Account requireSession(const std::string &session);
    /// The job that a field names, which must belong to the account of the request. Throws Refusal.
    [[nodiscard]] Job requireJob(const Fields &fields, std::string_view field,
                                 const RequestContext &context);

private:
    AccountStore &m_accounts;
    JobStore &m_jobs;
    RateLimiter m_wrongNumbers{60};
};

} // namespace localservice
