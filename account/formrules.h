// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// What is wrong with what the user typed, in a sentence for him; empty when nothing is. The
/// service has the last word.

[[nodiscard]] QString problemWithName(const QString &name);
[[nodiscard]] QString problemWithEmail(const QString &email);
[[nodiscard]] QString problemWithCode(const QString &code);
/// For a password that is to be set.
[[nodiscard]] QString problemWithNewPassword(const QString &password);
/// For a password that was set earlier.
[[nodiscard]] QString problemWithPassword(const QString &password);
