// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/userrecord.h"

#include <QString>

/// What a user's subscription is worth now.
enum class Licence { None, Expired, Active };

/// By the user's record as the service last sent it.
[[nodiscard]] Licence licenceOf(const UserRecord &user);

/// The run mode that the user's licence allows: "full", or "demo" for the first 30 seconds of a
/// file.
[[nodiscard]] QString runMode(const UserRecord &user);

/// Whether the service's answer to the daily-limit query, -1 when unknown, forbids another file
/// today.
[[nodiscard]] bool isDailyLimitReached(int remainingFiles);

/// A greeting that says what the user's licence allows; plain text.
[[nodiscard]] QString welcomeText(const UserRecord &user);
