// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/userrecord.h"

#include <QString>

/// The state of a user's subscription.
enum class Licence { None, Expired, Active };

/// The licence according to the user record that the service last sent.
[[nodiscard]] Licence licenceOf(const UserRecord &user);

/// The run mode that the user's licence allows: "full", or "demo" for the first 30 seconds of a
/// file.
[[nodiscard]] QString runMode(const UserRecord &user);

/// Whether the answer to the daily-limit query (-1: unknown) forbids another file today.
[[nodiscard]] bool isDailyLimitReached(int remainingFiles);

/// A greeting that says what the user's licence allows; plain text.
[[nodiscard]] QString welcomeText(const UserRecord &user);
