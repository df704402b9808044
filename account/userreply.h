// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/userrecord.h"

/// The service's answer to a sign-in, a registration, a check or a change.
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

/// The text to show under the form for a body that is no user: truncated if too long, never empty.
[[nodiscard]] QString refusalText(const QString &body);
