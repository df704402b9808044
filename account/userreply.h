// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/userrecord.h"

/// What the service's answer to a sign-in, a registration, a check or a change means.
struct UserReply
{
    enum class Kind {
        User, ///< a signed-in user
        Refusal, ///< a sentence for the user
        Garbled ///< neither: a half answer, or somebody else's page in between
    };
    Kind kind = Kind::Garbled;
    UserRecord user;
    QString accessToken;

    bool operator==(const UserReply &) const = default;
};

/// Reads the body of an answer to a sign-in, a registration, a change or a check. A user is JSON
/// with a "hash"; other markup, or nothing at all, is Garbled.
[[nodiscard]] UserReply parseUserReply(const QString &body);

/// A body that is no user, as it is shown under the form: as it stands, but of a readable
/// length and never empty.
[[nodiscard]] QString refusalText(const QString &body);
