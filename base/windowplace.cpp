// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/windowplace.h"

QPoint placeWithin(QRect window, const QRect &space)
{
    window.moveRight(qMin(window.right(), space.right()));
    window.moveBottom(qMin(window.bottom(), space.bottom()));
    window.moveLeft(qMax(window.left(), space.left()));
    window.moveTop(qMax(window.top(), space.top()));
    return window.topLeft();
}

QPoint placeOver(const QRect &other, QSize size, const QRect &space)
{
    QRect place(QPoint(), size);
    place.moveCenter(other.center());
    return placeWithin(place, space);
}
