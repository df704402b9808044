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
        Malformed ///< neither: truncated JSON, or a captive-portal page
    };
    Kind kind = Kind::Malformed;
    UserRecord user;
    QString accessToken;

    bool operator==(const UserReply &) const = default;
};

/// Reads the body of an answer to a sign-in, a registration, a change or a check. A user is JSON
/// with a "hash"; any other JSON or HTML, or an empty body, is Malformed.
[[nodiscard]] UserReply parseUserReply(const QString &body);

/// A body that is no user, as it is shown under the form: as it stands, but of a readable
/// length and never empty.
[[nodiscard]] QString refusalText(const QString &body);
