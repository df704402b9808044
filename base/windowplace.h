// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>

/// The position that keeps a window within the available space of its screen, moved as little as
/// possible. A window that is too large keeps its title bar visible.
[[nodiscard]] QPoint placeWithin(QRect window, const QRect &space);

/// The position of a window centred over another one, as far as the space allows.
[[nodiscard]] QPoint placeOver(const QRect &other, QSize size, const QRect &space);
