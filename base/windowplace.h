// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>

/// Where a window of a size stands in place of another one: over its middle, and within the space
/// of its screen as far as the size allows. A window that is too large keeps its title bar in
/// reach.
[[nodiscard]] QPoint placeOver(const QRect &other, QSize size, const QRect &space);
