// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/accounts.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"

#include <Poco/DateTimeFormatter.h>
#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/String.h>
#include <Poco/Timestamp.h>

#include <algorithm>
#include <sstream>

namespace localservice {

namespace {

    constexpr std::size_t kLongestText = 254;
    constexpr std::size_t kShortestPassword = 8;
    constexpr std::size_t kLongestPassword = 1024;
    constexpr std::int64_t kDay = 86400;

    constexpr const char *kWrongSignIn = "The e-mail address or the password is wrong.";
    constexpr const char *kWrongCode = "The recovery code is wrong or no longer valid.";

    std::string day(std::int64_t seconds)
    {
        return Poco::DateTimeFormatter::format(Poco::Timestamp::fromEpochTime(seconds), "%Y-%m-%d");
    }

    template <typename Json> std::string textOf(const Json &json)
    {
        std::ostringstream stream;
        json.stringify(stream);
        return stream.str();
    }

    bool looksLikeEmail(const std::string &email)
    {
        const std::size_t at = email.find('@');
        return at != std::string::npos && at > 0 && at + 1 < email.size()
            && email.find('@', at + 1) == std::string::npos && email.size() <= kLongestText
            && std::none_of(email.begin(), email.end(),
                            [](unsigned char c) { return c <= ' ' || c == 0x7f; });
    }

    bool isSameEmail(const std::string &one, const std::string &other)
    {
        return Poco::icompare(one, other) == 0;
    }

    void checkPassword(const std::string &password)
    {
        if (password.size() < kShortestPassword)
            throw Refusal("The password must have at least 8 characters.");
        if (password.size() > kLongestPassword)
            throw Refusal("The password is too long.");
    }

    // `ownEmail` is the one that the person has already.
    AccountChange personFrom(const Fields &fields, const std::string &ownEmail)
    {
        AccountChange person{Poco::trim(fields["name"]), Poco::trim(fields["email"]),
                             fields["password"]};
        if (person.name.empty() || person.name.size() > kLongestText)
            throw Refusal("The name is missing or too long.");
        if (!looksLikeEmail(person.email))
            throw Refusal("This is not an e-mail address.");
        // Whoever had it before this computer's owner does would own what is the owner's.
        if (isSameEmail(person.email, kLocalEmail) && !isSameEmail(ownEmail, kLocalEmail))
            throw Refusal("This is not an e-mail address.");
        return person;
    }

    Poco::Dynamic::Var subscriptionJson(const Account &account, Subscription subscription)
    {
        if (subscription == Subscription::None)
            return {};
        Poco::JSON::Object::Ptr json = new Poco::JSON::Object;
        json->set("id", 1);
        json->set("added", day(account.added));
        json->set("period", "unlimited");
        json->set("version", "full");
        json->set("type", "local");
        json->set("expired", subscription == Subscription::Expired ? 1 : 0);
        return json;
    }

} // namespace

Accounts::Accounts(AccountStore &accounts, JobStore &jobs, Gate &gate, const Licence &licence,
                   int keepDays)
    : m_accounts(accounts)
    , m_jobs(jobs)
    , m_gate(gate)
    , m_licence(licence)
    , m_keepDays(keepDays)
{ }

std::string Accounts::userJson(const Account &account, const std::string &hash) const
{
    Poco::JSON::Object json;
    json.set("user_id", account.id);
    json.set("name", account.name);
    json.set("email", account.email);
    json.set("hash", hash);
    json.set("subscription", subscriptionJson(account, m_licence.subscription));
    json.set("access_token", m_accounts.tokenOf(hash));
    return textOf(json);
}

void Accounts::countTry(const std::string &email, const Caller &caller)
{
    if (!m_tries.count(caller.address + "\n" + Poco::toLower(email)))
        throw Refusal("Too many tries. Please wait a minute and try again.");
}

std::string Accounts::login(const Fields &fields, const Caller &caller)
{
    const std::string email = Poco::trim(fields["email"]);
    // Nobody has these; the tries of a minute are kept in memory, so they stay short.
    if (email.size() > kLongestText || fields["password"].size() > kLongestPassword)
        throw Refusal(kWrongSignIn);
    countTry(email, caller);
    const std::optional<Account> account = m_accounts.signIn(email, fields["password"]);
    if (!account)
        throw Refusal(kWrongSignIn);
    return userJson(*account, m_accounts.openSession(account->id));
}

std::string Accounts::registerAccount(const Fields &fields, const Caller &caller)
{
    const AccountChange person = personFrom(fields, "");
    checkPassword(person.password);
    countTry("", caller);
    const Account account = m_accounts.add(person);
    return userJson(account, m_accounts.openSession(account.id));
}

std::string Accounts::recover(const Fields &fields, const Caller &caller)
{
    const std::string email = Poco::trim(fields["email"]);
    if (!looksLikeEmail(email))
        throw Refusal("This is not an e-mail address.");
    countTry(email, caller);
    if (fields["code"].empty()) {
        // The reply is the same for an unknown address, so that nobody learns who has an account.
        if (const std::optional<std::string> code = m_accounts.openRecovery(email))
            log("The recovery code for " + email + " is " + *code
                + " (valid for 30 minutes, once)");
        return "1";
    }
    checkPassword(fields["password"]);
    if (!m_accounts.recover(email, Poco::toLower(Poco::trim(fields["code"])), fields["password"]))
        throw Refusal(kWrongCode);
    return "1";
}

std::string Accounts::check(const Fields &fields, const Caller &caller)
{
    const std::string &session = sessionOf(fields, caller);
    return userJson(m_gate.requireSession(session), session);
}

std::string Accounts::logout(const Fields &fields, const Caller &caller)
{
    // Without the access token, which a client that is signing out may have forgotten already.
    const std::string &session = sessionOf(fields, caller);
    (void)m_gate.requireSession(session);
    m_accounts.closeSession(session);
    return "1";
}

std::string Accounts::update(const Fields &fields, const Caller &caller)
{
    const Account account = m_gate.require(fields, caller);
    const std::string &session = sessionOf(fields, caller);
    const AccountChange person = personFrom(fields, account.email);
    if (!person.password.empty())
        checkPassword(person.password);
    // As by registerAccount(), one learns whether an address is taken, or makes work.
    if (!person.password.empty() || !isSameEmail(person.email, account.email))
        countTry("", caller);
    m_accounts.change(account, person, session);
    return userJson(m_gate.requireSession(session), session);
}

std::string Accounts::archive(const Fields &fields, const Caller &caller)
{
    Poco::JSON::Array list;
    for (const Job &job : m_jobs.finishedOf(m_gate.require(fields, caller).id)) {
        Poco::JSON::Object::Ptr record = new Poco::JSON::Object;
        record->set("name", job.name);
        record->set("deleted", day(job.added + m_keepDays * kDay));
        record->set("instrument", job.instrument);
        record->set("extension", job.extension);
        record->set("demoFile", job.demo ? "yes" : "no");
        record->set("local_file_path", job.original);
        record->set("ai_id", job.id);
        list.add(record);
    }
    return textOf(list);
}

} // namespace localservice
