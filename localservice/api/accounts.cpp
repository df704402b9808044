// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/accounts.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"

#include <Poco/DateTimeFormatter.h>
#include <Poco/String.h>
#include <Poco/Timestamp.h>

#include <algorithm>
#include <sstream>

namespace localservice {

namespace {

constexpr std::size_t maxTextBytes = 254;
constexpr std::size_t minPasswordBytes = 8;
constexpr std::size_t maxPasswordBytes = 1024;
constexpr std::int64_t secondsPerDay = 86400;
constexpr int maxArchiveRecords = 1000;
constexpr std::size_t maxArchiveBytes = 1 << 20;

constexpr const char *wrongSignIn = "The e-mail address or the password is wrong.";
constexpr const char *wrongCode = "The recovery code is wrong or no longer valid.";

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
        && email.find('@', at + 1) == std::string::npos && email.size() <= maxTextBytes
        && email.find(' ') == std::string::npos && printable(email) == email;
}

bool isSameEmail(const std::string &one, const std::string &other)
{
    return Poco::icompare(one, other) == 0;
}

void checkPassword(const std::string &password)
{
    if (password.size() < minPasswordBytes)
        throw Refusal("The password must have at least 8 characters.");
    if (password.size() > maxPasswordBytes)
        throw Refusal("The password is too long.");
}

// `ownEmail` is the one that the person has already.
AccountChange accountChangeFrom(const Fields &fields, const std::string &ownEmail)
{
    AccountChange change{Poco::trim(fields["name"]), Poco::trim(fields["email"]),
                         fields["password"]};
    if (change.name.empty() || change.name.size() > maxTextBytes)
        throw Refusal("The name is missing or too long.");
    if (!looksLikeEmail(change.email))
        throw Refusal("This is not an e-mail address.");
    // Otherwise another account could take over the address of this computer's own account.
    if (isSameEmail(change.email, localEmail) && !isSameEmail(ownEmail, localEmail))
        throw Refusal("This is not an e-mail address.");
    return change;
}

// Takes as long for an unknown address.
void logRecovery(const std::string &email, const std::optional<std::string> &code)
{
    if (code && code->empty())
        log("A recovery code was asked for " + email + ", whose earlier one is still valid");
    else if (code)
        log("The recovery code for " + email + " is " + *code + " (valid for 30 minutes, once)");
    else
        log("A recovery code was asked for " + email + ", which has no account with a password");
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

Accounts::Accounts(AccountStore &accounts, JobStore &jobs, Authorizer &authorizer,
                   const Licence &licence, int keepDays)
    : m_accounts(accounts)
    , m_jobs(jobs)
    , m_authorizer(authorizer)
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

void Accounts::countChange(const RequestContext &context)
{
    if (!m_changes.count(context.address))
        throw Refusal(tooManyTries);
}

std::string Accounts::login(const Fields &fields, const RequestContext &context)
{
    const std::string email = Poco::trim(fields["email"]);
    // No account has these; and tries are kept in memory for a minute, so their keys stay short.
    if (email.size() > maxTextBytes || fields["password"].size() > maxPasswordBytes)
        throw Refusal(wrongSignIn);
    m_guard.countTry(context.address, email);
    const SignInGuard::HashPlace place(m_guard, context.address);
    const std::optional<Account> account = m_accounts.signIn(email, fields["password"]);
    if (!account) {
        m_guard.countFailure(context.address, email);
        throw Refusal(wrongSignIn);
    }
    return userJson(*account, m_accounts.openSession(account->id));
}

std::string Accounts::registerAccount(const Fields &fields, const RequestContext &context)
{
    if (!m_licence.takesRegistrations)
        throw Refusal("This service takes no registrations.");
    const AccountChange change = accountChangeFrom(fields, "");
    checkPassword(change.password);
    countChange(context);
    const SignInGuard::HashPlace place(m_guard, context.address);
    const Account account = m_accounts.add(change);
    return userJson(account, m_accounts.openSession(account.id));
}

std::string Accounts::recover(const Fields &fields, const RequestContext &context)
{
    const std::string email = Poco::trim(fields["email"]);
    if (!looksLikeEmail(email) || isSameEmail(email, localEmail))
        throw Refusal("This is not an e-mail address.");
    // Apart from the sign-ins, which nobody can stop by asking for codes.
    if (!m_recoveries.count(context.address))
        throw Refusal(tooManyTries);
    if (fields["code"].empty()) {
        logRecovery(email, m_accounts.openRecovery(email));
        return "1";
    }
    checkPassword(fields["password"]);
    const SignInGuard::HashPlace place(m_guard, context.address);
    if (m_accounts.recover(email, Poco::toLower(Poco::trim(fields["code"])), fields["password"]))
        return "1";
    throw Refusal(wrongCode);
}

std::string Accounts::check(const Fields &fields, const RequestContext &context)
{
    const std::string &session = sessionOf(fields, context);
    return userJson(m_authorizer.requireSession(session), session);
}

std::string Accounts::logout(const Fields &fields, const RequestContext &context)
{
    // Without the access token, which a client that is signing out may have forgotten already.
    const std::string &session = sessionOf(fields, context);
    (void)m_authorizer.requireSession(session);
    m_accounts.closeSession(session);
    return "1";
}

std::string Accounts::update(const Fields &fields, const RequestContext &context)
{
    const Account account = m_authorizer.require(fields, context);
    const std::string &session = sessionOf(fields, context);
    const AccountChange change = accountChangeFrom(fields, account.email);
    if (!change.password.empty())
        checkPassword(change.password);
    if (change.password.empty() && isSameEmail(change.email, account.email)) {
        m_accounts.change(account, change, session);
    } else {
        countChange(context);
        const SignInGuard::HashPlace place(m_guard, context.address);
        requirePassword(account, fields["oldPassword"], context);
        m_accounts.change(account, change, session);
    }
    return userJson(m_authorizer.requireSession(session), session);
}

void Accounts::requirePassword(const Account &account, const std::string &password,
                               const RequestContext &context)
{
    if (!m_accounts.hasPassword(account.id))
        throw Refusal("The account of this computer has no password: its e-mail address and "
                      "password cannot be changed.");
    m_guard.countTry(context.address, account.email);
    if (password.size() <= maxPasswordBytes && m_accounts.signIn(account.email, password))
        return;
    m_guard.countFailure(context.address, account.email);
    throw Refusal("The old password is wrong.");
}

std::string Accounts::archive(const Fields &fields, const RequestContext &context)
{
    const std::int64_t account = m_authorizer.require(fields, context).id;
    // One list at a time, as each takes memory.
    const std::lock_guard lock(m_archiveMutex);
    std::string list;
    for (const Job &job : m_jobs.finishedOf(account, maxArchiveRecords)) {
        const std::string record = textOf(archiveRecord(job));
        if (list.size() + record.size() > maxArchiveBytes)
            break;
        list += (list.empty() ? "" : ",") + record;
    }
    return '[' + list + ']';
}

Poco::JSON::Object Accounts::archiveRecord(const Job &job) const
{
    Poco::JSON::Object record;
    record.set("name", job.name);
    record.set("deleted", day(job.added + m_keepDays * secondsPerDay));
    record.set("instrument", job.instrument);
    record.set("extension", job.extension);
    record.set("demoFile", job.demo ? "yes" : "no");
    record.set("local_file_path", job.original);
    record.set("ai_id", job.id);
    return record;
}

} // namespace localservice
