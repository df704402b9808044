// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>

/// Where a window stands within the space of its screen, moved no farther than it has to be. One
/// that is too large keeps its title bar in reach.
[[nodiscard]] QPoint placeWithin(QRect window, const QRect &space);

/// Where a window of a size stands in place of another one: over its middle, as far as the space
/// allows.
[[nodiscard]] QPoint placeOver(const QRect &other, QSize size, const QRect &space);
