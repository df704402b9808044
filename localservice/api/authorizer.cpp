// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/authorizer.h"

#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"

#include <charconv>

namespace localservice {

namespace {

constexpr const char *unknownSession =
    "The service does not know this sign-in. Please sign in again.";
constexpr const char *unknownJob = "The service does not know this file.";

// 0, which no job has, for text that is no number.
std::int32_t parseNumber(const std::string &text)
{
    std::int32_t number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? number : 0;
}

} // namespace

Account Authorizer::require(const Fields &fields, const RequestContext &context)
{
    const std::string &session = sessionOf(fields, context);
    const std::string &token = fields["accessToken"];
    if (!token.empty() && !sameSecret(token, m_accounts.tokenOf(session)))
        throw Refusal(unknownSession);
    return requireSession(session);
}

Account Authorizer::requireSession(const std::string &session)
{
    const std::optional<Account> account = m_accounts.accountOf(session);
    if (!account)
        throw Refusal(unknownSession);
    return *account;
}

Job Authorizer::requireJob(const Fields &fields, std::string_view field,
                           const RequestContext &context)
{
    // Without a session every number gets the same answer.
    std::optional<Account> account;
    if (!sessionOf(fields, context).empty())
        account = require(fields, context);
    const std::int32_t number = parseNumber(fields[field]);
    const std::optional<Job> job = number > 0 ? m_jobs.find(number) : std::nullopt;
    if (job && account && account->id == job->account)
        return *job;
    // Clients cancel number 0 before they know a number: that is no guess. Other people's guesses,
    // from behind the same address, do not lock an owner out of their jobs.
    if (number > 0 && !m_wrongNumbers.count(context.address))
        throw Refusal("Too many requests for unknown files. Please wait a minute.");
    throw Refusal(unknownJob);
}

} // namespace localservice
