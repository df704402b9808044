// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/database.h"

#include <functional>
#include <optional>
#include <string>

namespace localservice {

/// A person who may use the service.
struct Account
{
    std::int64_t id = 0;
    std::string name;
    std::string email;
    std::int64_t added = 0; ///< seconds since 1970
};

/// What an account changes about itself; an empty password means: keep the old one.
struct AccountChange
{
    std::string name;
    std::string email;
    std::string password;
};

/// The accounts, their sessions and what they have used up today. Passwords are kept as Argon2id
/// hashes, session hashes and recovery codes as keyed digests. Thread-safe.
class AccountStore final
{
public:
    /// How long a session lasts after its latest use, in seconds.
    static constexpr std::int64_t sessionSeconds = std::int64_t{30} * 86400;

    /// How many sessions an account has at most: a new one ends the one not used for the longest.
    static constexpr int maxSessions = 32;

    /// Returns the seconds since 1970.
    using Clock = std::function<std::int64_t()>;

    explicit AccountStore(Database &database, Clock clock = secondsNow);

    /// Creates an account; throws Refusal when the e-mail address is taken.
    Account add(const AccountChange &change);
    /// The account of an e-mail address and its password. Takes the same time for an unknown
    /// address.
    [[nodiscard]] std::optional<Account> signIn(const std::string &email,
                                                const std::string &password);
    /// Whether somebody can sign in to the account.
    [[nodiscard]] bool hasPassword(std::int64_t account);
    /// The account of a session, which this prolongs.
    [[nodiscard]] std::optional<Account> accountOf(const std::string &hash);
    /// Begins a session and returns its hash, the secret that names it.
    [[nodiscard]] std::string openSession(std::int64_t account);
    /// Ends a session, unless it is the local one.
    void closeSession(const std::string &hash);
    /// The access token that belongs to a session.
    [[nodiscard]] std::string tokenOf(const std::string &hash) const;
    /// Changes an account; a new password ends all its sessions but `hash` and the local one.
    /// Throws Refusal when the e-mail address is another one's.
    void change(const Account &account, const AccountChange &change, const std::string &hash);

    /// A code for a new password, valid once and for half an hour; "" when an earlier one still is,
    /// so that nobody makes it invalid by asking again. Empty for an unknown address and for this
    /// computer's own account. Takes the same time in all cases.
    [[nodiscard]] std::optional<std::string> openRecovery(const std::string &email);
    /// Sets a new password with such a code and ends all sessions but the local one; returns
    /// whether the code was right.
    [[nodiscard]] bool recover(const std::string &email, const std::string &code,
                               const std::string &password);

    /// How many files an account has sent today.
    [[nodiscard]] int processedToday(std::int64_t account);
    void countProcessed(std::int64_t account);

    /// The session of this computer's own account, created at the first call. It never expires.
    [[nodiscard]] std::string localSession();

private:
    [[nodiscard]] std::optional<Account> find(const std::string &email);
    [[nodiscard]] bool isLocal(std::int64_t account);
    [[nodiscard]] std::string setting(const std::string &name);
    void setSetting(const std::string &name, const std::string &value);
    void keepSession(const std::string &hash, std::int64_t account, std::int64_t expires);
    void prolong(const std::string &digest, std::int64_t expires);
    [[nodiscard]] std::optional<std::int64_t> ownerOfCode(const std::string &email,
                                                          const std::string &code);
    // Uses up the recovery code as well.
    void setPassword(std::int64_t account, const std::string &passwordHash,
                     const std::string &session);
    [[nodiscard]] std::string sessionDigest(const std::string &hash) const;

    Database &m_database;
    Clock m_clock;
    std::string m_key; // of the digests
};

/// The e-mail address of the account that localSession() makes.
inline constexpr const char *localEmail = "local@localhost";

} // namespace localservice
