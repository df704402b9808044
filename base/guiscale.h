// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

inline constexpr double minGuiScale = 0.6;
inline constexpr double maxGuiScale = 1.5;

/// The scale to use for a stored one: clamped to the range above, and 1 for a value that is no
/// positive number.
[[nodiscard]] double usableGuiScale(double stored);
