// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/// The paths where a sibling program of that name may be installed, in search order.
[[nodiscard]] QStringList siblingCandidates(const QString &name);

/// The versions of a sibling program, newest first, by its display name without spaces; empty when
/// there is no such program.
[[nodiscard]] QStringList siblingVersions(const QString &key);
