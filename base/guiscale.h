// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

inline constexpr double minGuiScale = 0.6;
inline constexpr double maxGuiScale = 1.5;

/// The scale at which windows are shown for a stored one: the nearest that can be used, and 1 for a
/// value that is no positive number.
[[nodiscard]] double usableGuiScale(double stored);
