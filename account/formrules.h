// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// What is wrong with what the user typed, in a sentence for them; empty when nothing is. The
/// service has the last word.

[[nodiscard]] QString validateName(const QString &name);
[[nodiscard]] QString validateEmail(const QString &email);
[[nodiscard]] QString validateCode(const QString &code);
/// For a password that is to be set.
[[nodiscard]] QString validateNewPassword(const QString &password);
/// For a password that was set earlier.
[[nodiscard]] QString validatePassword(const QString &password);
