// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The argument for a program that may not know long paths: on Windows an absolute path of more
/// than 259 characters in the form that has no limit. Everything else is returned as it is.
[[nodiscard]] QString openableByAll(const QString &argument);
