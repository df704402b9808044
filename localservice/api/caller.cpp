// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/caller.h"

#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"

#include <charconv>

namespace localservice {

namespace {

    constexpr const char *kUnknownSession =
        "The service does not know this sign-in. Please sign in again.";
    constexpr const char *kUnknownJob = "The service does not know this file.";

    // 0, which no job has, for whatever is not a number.
    std::int32_t numberIn(const std::string &text)
    {
        std::int32_t number = 0;
        const char *const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        return error == std::errc() && stop == end ? number : 0;
    }

} // namespace

const std::string &sessionOf(const Fields &fields, const Caller &caller)
{
    const std::string &hash = fields["hash"];
    return hash.empty() ? caller.session : hash;
}

Account Gate::require(const Fields &fields, const Caller &caller)
{
    const std::string &session = sessionOf(fields, caller);
    const std::string &token = fields["accessToken"];
    if (!token.empty() && !sameSecret(token, m_accounts.tokenOf(session)))
        throw Refusal(kUnknownSession);
    return requireSession(session);
}

Account Gate::requireSession(const std::string &session)
{
    const std::optional<Account> account = m_accounts.accountOf(session);
    if (!account)
        throw Refusal(kUnknownSession);
    return *account;
}

Job Gate::requireJob(const Fields &fields, std::string_view field, const Caller &caller)
{
    // Nobody in particular hears the same about every number.
    std::optional<Account> account;
    if (!sessionOf(fields, caller).empty())
        account = require(fields, caller);
    const std::int32_t number = numberIn(fields[field]);
    const std::optional<Job> job = number > 0 ? m_jobs.find(number) : std::nullopt;
    if (job && account && account->id == job->account)
        return *job;
    // Clients cancel number 0 before they know a number: that is no guess. Other people's guesses,
    // from behind the same address, do not keep an owner from his jobs.
    if (number > 0 && !m_wrongNumbers.count(caller.address))
        throw Refusal("Too many requests for unknown files. Please wait a minute.");
    throw Refusal(kUnknownJob);
}

} // namespace localservice
