// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/accountstore.h"

#include "localservice/base/log.h"
#include "localservice/base/password.h"
#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"

#include <Poco/Data/RecordSet.h>
#include <Poco/Data/SQLite/SQLiteException.h>
#include <Poco/DateTimeFormatter.h>
#include <Poco/LocalDateTime.h>
#include <Poco/Timestamp.h>

#include <limits>

using namespace Poco::Data::Keywords;

namespace localservice {

namespace {

constexpr std::size_t hashBytes = 32;
constexpr std::size_t codeBytes = 5;
constexpr std::int64_t codeSeconds = 1800;
// A session in use is prolonged at most this often.
constexpr std::int64_t prolongSeconds = 3600;
constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
constexpr const char *deleteOldSessions =
    "DELETE FROM sessions WHERE digest IN (SELECT digest FROM sessions WHERE account = ?"
    " ORDER BY expires DESC, rowid DESC LIMIT -1 OFFSET ?)";

std::string localDay(std::int64_t seconds)
{
    const Poco::DateTime time(Poco::Timestamp::fromEpochTime(seconds));
    return Poco::DateTimeFormatter::format(Poco::LocalDateTime(time), "%Y-%m-%d");
}

std::optional<Account> firstOf(Poco::Data::Statement &select)
{
    select.execute();
    Poco::Data::RecordSet rows(select);
    if (!rows.moveFirst())
        return std::nullopt;
    return Account{rows["id"].convert<std::int64_t>(), rows["name"].convert<std::string>(),
                   rows["email"].convert<std::string>(), rows["added"].convert<std::int64_t>()};
}

} // namespace

AccountStore::AccountStore(Database &database, Clock clock)
    : m_database(database)
    , m_clock(std::move(clock))
{
    m_key = setting("digest_key");
    if (m_key.empty()) {
        m_key = randomHex(hashBytes);
        setSetting("digest_key", m_key);
    }
}

Account AccountStore::add(const AccountChange &change)
{
    const std::string password = change.password.empty() ? "" : passwordHash(change.password);
    Database::Access access = m_database.access();
    if (find(change.email))
        throw Refusal("There is already an account with this e-mail address.");
    access.session << "INSERT INTO users(name, email, password, added) VALUES(?, ?, ?, ?)",
        bind(change.name), bind(change.email), bind(password), bind(m_clock()), now;
    return *find(change.email);
}

std::optional<Account> AccountStore::find(const std::string &email)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select << "SELECT id, name, email, added FROM users WHERE email = ?", bind(email);
    return firstOf(select);
}

std::optional<Account> AccountStore::signIn(const std::string &email, const std::string &password)
{
    std::string hash;
    {
        Database::Access access = m_database.access();
        access.session << "SELECT password FROM users WHERE email = ?", bind(email), into(hash),
            now;
    }
    return passwordMatches(hash, password) ? find(email) : std::nullopt;
}

bool AccountStore::hasPassword(std::int64_t account)
{
    Database::Access access = m_database.access();
    int count = 0;
    access.session << "SELECT COUNT(*) FROM users WHERE id = ? AND password <> ''", bind(account),
        into(count), now;
    return count == 1;
}

std::optional<Account> AccountStore::accountOf(const std::string &hash)
{
    const std::string digest = sessionDigest(hash);
    Database::Access access = m_database.access();
    std::string stored;
    std::int64_t expires = 0;
    access.session << "SELECT digest, expires FROM sessions WHERE digest = ? AND expires > ?",
        bind(digest), bind(m_clock()), into(stored), into(expires), now;
    if (!sameSecret(stored, digest))
        return std::nullopt;
    prolong(digest, expires);
    Poco::Data::Statement select(access.session);
    select << "SELECT users.id AS id, name, email, users.added AS added FROM users"
              " JOIN sessions ON sessions.account = users.id WHERE digest = ?",
        bind(digest);
    return firstOf(select);
}

std::string AccountStore::openSession(std::int64_t account)
{
    std::string hash = randomHex(hashBytes);
    keepSession(hash, account, m_clock() + sessionSeconds);
    return hash;
}

void AccountStore::keepSession(const std::string &hash, std::int64_t account, std::int64_t expires)
{
    Database::Access access = m_database.access();
    access.session << "DELETE FROM sessions WHERE expires <= ?", bind(m_clock()), now;
    access.session << "INSERT OR REPLACE INTO sessions(digest, account, expires) VALUES(?, ?, ?)",
        bind(sessionDigest(hash)), bind(account), bind(expires), now;
    access.session << deleteOldSessions, bind(account), bind(maxSessions), now;
}

void AccountStore::prolong(const std::string &digest, std::int64_t expires)
{
    const std::int64_t later = m_clock() + sessionSeconds;
    if (expires > later - prolongSeconds)
        return;
    try {
        Database::Access access = m_database.access();
        access.session << "UPDATE sessions SET expires = ? WHERE digest = ?", bind(later),
            bind(digest), now;
    } catch (const Poco::Data::SQLite::SQLiteException &error) {
        // Not an error: the session is still valid, and on a full disk results can be fetched.
        log("Could not prolong a session: " + error.displayText());
    }
}

void AccountStore::closeSession(const std::string &hash)
{
    m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        access.session << "DELETE FROM sessions WHERE digest = ? AND expires < ?",
            bind(sessionDigest(hash)), bind(never), now;
    });
}

std::string AccountStore::tokenOf(const std::string &hash) const
{
    return keyedDigest("token " + hash, m_key);
}

std::string AccountStore::sessionDigest(const std::string &hash) const
{
    return keyedDigest("session " + hash, m_key);
}

void AccountStore::change(const Account &account, const AccountChange &change,
                          const std::string &hash)
{
    const std::string password = change.password.empty() ? "" : passwordHash(change.password);
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    const std::optional<Account> owner = find(change.email);
    if (owner && owner->id != account.id)
        throw Refusal("There is already an account with this e-mail address.");
    access.session << "UPDATE users SET name = ?, email = ? WHERE id = ?", bind(change.name),
        bind(change.email), bind(account.id), now;
    if (!password.empty())
        setPassword(account.id, password, hash);
    transaction.commit();
}

void AccountStore::setPassword(std::int64_t account, const std::string &passwordHash,
                               const std::string &session)
{
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    access.session << "UPDATE users SET password = ?, code = '', code_until = 0 WHERE id = ?",
        bind(passwordHash), bind(account), now;
    access.session << "DELETE FROM sessions WHERE account = ? AND digest <> ? AND expires < ?",
        bind(account), bind(sessionDigest(session)), bind(never), now;
    transaction.commit();
}

std::optional<std::string> AccountStore::openRecovery(const std::string &email)
{
    const std::string code = randomHex(codeBytes);
    Database::Access access = m_database.access();
    const std::optional<Account> account = find(email);
    // As much work for an unknown address as for a known one, also below.
    const bool isKnown = !isLocal(account ? account->id : 0) && account;
    const std::int64_t time = m_clock();
    int valid = 0;
    // A later end than half an hour is from before the clock was set right.
    access.session << "SELECT COUNT(*) FROM users WHERE email = ? AND code_until BETWEEN ? AND ?",
        bind(email), bind(time), bind(time + codeSeconds), into(valid), now;
    if (!isKnown || valid > 0) {
        setSetting("unused_code", keyedDigest("code " + code, m_key));
        return isKnown ? std::optional<std::string>("") : std::nullopt;
    }
    access.session << "UPDATE users SET code = ?, code_until = ? WHERE email = ?",
        bind(keyedDigest("code " + code, m_key)), bind(time + codeSeconds), bind(email), now;
    return code;
}

bool AccountStore::recover(const std::string &email, const std::string &code,
                           const std::string &password)
{
    if (!ownerOfCode(email, code))
        return false;
    const std::string hash = passwordHash(password);
    // Hashing is slow: another request may have used the code meanwhile.
    Database::Access access = m_database.access();
    const std::optional<std::int64_t> owner = ownerOfCode(email, code);
    if (owner)
        setPassword(*owner, hash, {});
    return owner.has_value();
}

std::optional<std::int64_t> AccountStore::ownerOfCode(const std::string &email,
                                                      const std::string &code)
{
    Database::Access access = m_database.access();
    std::int64_t id = 0;
    std::string stored;
    access.session << "SELECT id, code FROM users WHERE email = ? AND code_until >= ?", bind(email),
        bind(m_clock()), into(id), into(stored), now;
    if (stored.empty() || !sameSecret(stored, keyedDigest("code " + code, m_key)))
        return std::nullopt;
    return id;
}

int AccountStore::processedToday(std::int64_t account)
{
    const std::string day = localDay(m_clock());
    Database::Access access = m_database.access();
    int files = 0;
    access.session << "SELECT files FROM processed WHERE account = ? AND day = ?", bind(account),
        bind(day), into(files), now;
    return files;
}

void AccountStore::countProcessed(std::int64_t account)
{
    const std::string day = localDay(m_clock());
    Database::Access access = m_database.access();
    access.session << "INSERT INTO processed(account, day, files) VALUES(?, ?, 1)"
                      " ON CONFLICT(account, day) DO UPDATE SET files = files + 1",
        bind(account), bind(day), now;
}

bool AccountStore::isLocal(std::int64_t account)
{
    return setting("local_account") == std::to_string(account);
}

std::string AccountStore::localSession()
{
    Database::Access access = m_database.access();
    std::string hash = setting("local_hash");
    std::int64_t id = 0;
    if (hash.empty()) {
        hash = randomHex(hashBytes);
        Transaction transaction(access.session);
        const std::optional<Account> known = find(localEmail);
        id = known ? known->id : add({"Local user", localEmail, ""}).id;
        setSetting("local_hash", hash);
        setSetting("local_account", std::to_string(id));
        transaction.commit();
    } else {
        id = std::stoll(setting("local_account"));
    }
    if (!accountOf(hash))
        keepSession(hash, id, never);
    return hash;
}

std::string AccountStore::setting(const std::string &name)
{
    Database::Access access = m_database.access();
    std::string value;
    access.session << "SELECT value FROM settings WHERE name = ?", bind(name), into(value), now;
    return value;
}

void AccountStore::setSetting(const std::string &name, const std::string &value)
{
    Database::Access access = m_database.access();
    access.session << "INSERT INTO settings(name, value) VALUES(?, ?)"
                      " ON CONFLICT(name) DO UPDATE SET value = excluded.value",
        bind(name), bind(value), now;
}

} // namespace localservice
