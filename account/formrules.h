// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// Each returns an error message for the user's input, empty when it is valid. The service may
/// still refuse it.

[[nodiscard]] QString validateName(const QString &name);
[[nodiscard]] QString validateEmail(const QString &email);
[[nodiscard]] QString validateCode(const QString &code);
/// For a new password.
[[nodiscard]] QString validateNewPassword(const QString &password);
/// For an existing password.
[[nodiscard]] QString validatePassword(const QString &password);
