// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/session.h"

#include "account/credentialsfile.h"
#include "account/userreply.h"
#include "base/programdata.h"

#include <QSysInfo>
#include <QUuid>

namespace {

CredentialsFile fileOf(const ProgramData &store)
{
    QByteArray machine = QSysInfo::machineUniqueId();
    if (machine.isEmpty())
        machine = QSysInfo::machineHostName().toUtf8();
    return {store.appFolder(), credentialsKey(store.credentialsText(), machine)};
}

/// Credentials without session data, for a different service.
Credentials forAnotherService(const Credentials &kept)
{
    return {kept.publicKey, kept.email, {}, {}, false, {}};
}

} // namespace

QList<SessionCandidate> sessionsToTry(const Credentials &kept,
                                      const std::optional<LocalAccount> &local)
{
    QList<SessionCandidate> candidates;
    const QString own = local ? local->hash : QString();
    if (!kept.hash.isEmpty())
        candidates.append({kept.email, kept.hash, kept.hash == own});
    if (!own.isEmpty() && !kept.hasSignedOut && own != kept.hash)
        candidates.append({local->email, own, true});
    return candidates;
}

Session::Session(ProgramData &store)
    : m_store(store)
{ }

Credentials Session::restore()
{
    // After the first read the in-memory state wins; the file may be read-only.
    const AccessCredentials &access = m_store.access();
    const UserRecord &user = m_store.user();
    if (!access.publicKey.isEmpty())
        return {access.publicKey,   user.email,          user.hash,
                access.accessToken, access.hasSignedOut, m_store.serviceName()};
    Credentials kept = fileOf(m_store).read().value_or(Credentials());
    if (kept.publicKey.isEmpty()) {
        kept.publicKey = QUuid::createUuid().toString(QUuid::WithoutBraces);
        fileOf(m_store).write(kept);
    }
    if (kept.service != m_store.serviceName())
        kept = forAnotherService(kept);
    m_store.setAccess({kept.publicKey, kept.accessToken, kept.hasSignedOut});
    if (!kept.hash.isEmpty())
        resume({kept.email, kept.hash, false});
    return kept;
}

void Session::begin(const UserReply &reply)
{
    const Credentials before = restore();
    // The reply to a check may lack the token.
    const bool hasToken = !reply.accessToken.isEmpty();
    m_store.setUser(reply.user);
    keep({before.publicKey, reply.user.email, reply.user.hash,
          hasToken ? reply.accessToken : before.accessToken, false, m_store.serviceName()});
}

void Session::resume(const SessionCandidate &candidate)
{
    const bool isKnown = m_store.user().userId != 0;
    if (isKnown && m_store.user().hash == candidate.hash)
        return;
    UserRecord user;
    user.email = candidate.email;
    user.hash = candidate.hash;
    // The local account is always fully licensed.
    user.subscription.id = candidate.isLocal ? 1 : 0;
    m_store.setUser(user);
}

void Session::end(bool signedOutByUser)
{
    const Credentials before = restore();
    const Credentials left{before.publicKey, before.email, {}, {}, signedOutByUser, before.service};
    m_store.setUser({});
    m_store.setAccess({left.publicKey, left.accessToken, left.hasSignedOut});
    // An old file would sign the user in again at the next start.
    fileOf(m_store).overwrite(left);
}

void Session::keep(const Credentials &credentials)
{
    m_store.setAccess({credentials.publicKey, credentials.accessToken, credentials.hasSignedOut});
    fileOf(m_store).write(credentials);
}
