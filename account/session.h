// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/credentials.h"

#include <QList>

class ProgramData;
struct LocalAccount;
struct UserReply;

/// A session that the program may try to continue.
struct SessionCandidate
{
    QString email;
    QString hash;
    bool isLocal = false; ///< of the embedded service's account

    bool operator==(const SessionCandidate &) const = default;
};

/// The stored session first, then the embedded service's account unless the user has signed out.
[[nodiscard]] QList<SessionCandidate> sessionsToTry(const Credentials &kept,
                                                    const std::optional<LocalAccount> &local);

/// Who is signed in: keeps the store's user and access credentials and the credentials file in
/// step. Any number of these objects may work on one store.
class Session final
{
public:
    /// The store must outlive this object.
    explicit Session(ProgramData &store);

    /// The current session; the first call in a run reads the file, and creates the installation's
    /// public key if there is none. A session of another service is left out.
    Credentials restore();

    /// Stores the user from a reply, which must be of kind User.
    void begin(const UserReply &reply);
    /// Continues a stored session unverified while the service cannot be reached.
    void resume(const SessionCandidate &candidate);
    /// Signs out; only the installation's public key and the e-mail address are kept.
    void end(bool signedOutByUser);

private:
    void keep(const Credentials &credentials);

    ProgramData &m_store;
};
