// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"

#include <QVariantList>

/// What the service keeps for a user.
struct ArchiveAnswer
{
    QString error; ///< why there is no list, for the user; empty: there is one
    QVariantList records; ///< as the service sent them
};

/// How much of the list is read, in bytes; room for well over ten thousand records.
inline constexpr qint64 maxArchiveBytes = qint64(16) * 1024 * 1024;

/// Asks the service what it keeps for the user with that hash. Waits in a local event loop: the
/// caller must expect that its own object may be gone afterwards.
[[nodiscard]] ArchiveAnswer fetchArchive(AccountClient &account, const QString &hash);

/// The list in what the request brought; anything but a JSON array is an error.
[[nodiscard]] ArchiveAnswer archiveAnswer(const AccountAnswer &answer);
