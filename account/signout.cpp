// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/signout.h"

#include "account/accountclient.h"
#include "account/session.h"
#include "base/programdata.h"

void signOut(ProgramData &store, AccountClient &client)
{
    const QString hash = store.user().hash;
    Session(store).end(true);
    if (!hash.isEmpty())
        client.post(QStringLiteral("auth/logout.php"), {{QStringLiteral("hash"), hash}}, &client,
                    [](const AccountAnswer &) {});
}
