// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/credentials.h"

#include <QList>

class ProgramData;
struct LocalAccount;
struct UserReply;

/// A session that the program may try to go on with.
struct SessionCandidate
{
    QString email;
    QString hash;
    bool isLocal = false; ///< that of this machine's own account

    bool operator==(const SessionCandidate &) const = default;
};

/// The kept session comes first; after it this machine's own account, unless its user has signed
/// out.
[[nodiscard]] QList<SessionCandidate> sessionsToTry(const Credentials &kept,
                                                    const std::optional<LocalAccount> &local);

/// Who is signed in: keeps the store's user and access credentials and the credentials file in
/// step. Any number of these objects may work on one store.
class Session final
{
public:
    /// The store must outlive this object.
    explicit Session(ProgramData &store);

    /// The session as this run knows it; the first call in a run reads the file, and makes the
    /// installation's public key where there is none. A session of another service is left out.
    Credentials restore();

    /// Takes the service's word for who is signed in. The reply must be a user.
    void begin(const UserReply &reply);
    /// Goes on unchecked with a session that was kept, as long as the service cannot be asked.
    void resume(const SessionCandidate &candidate);
    /// Nobody is signed in any more; only the installation's public key and the e-mail stay.
    void end(bool signedOutByUser);

private:
    void keep(const Credentials &credentials);

    ProgramData &m_store;
};
