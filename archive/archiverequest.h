// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"

#include <QVariantList>

/// The results that the service keeps for a user.
struct ArchiveAnswer
{
    QString error; ///< error message for the user; empty on success
    QVariantList records; ///< as the service sent them
};

/// The most bytes read of the list; enough for well over ten thousand records.
inline constexpr qint64 maxArchiveBytes = qint64(16) * 1024 * 1024;

/// Requests the list for the user with that hash. Waits in a local event loop: the caller must
/// expect that its own object may be gone afterwards.
[[nodiscard]] ArchiveAnswer fetchArchive(AccountClient &account, const QString &hash);

/// Reads the list from an answer; anything but a JSON array is an error.
[[nodiscard]] ArchiveAnswer archiveAnswer(const AccountAnswer &answer);
