// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/windowplace.h"

QPoint placeOver(const QRect &other, QSize size, const QRect &space)
{
    QRect place(QPoint(), size);
    place.moveCenter(other.center());
    place.moveRight(qMin(place.right(), space.right()));
    place.moveBottom(qMin(place.bottom(), space.bottom()));
    place.moveLeft(qMax(place.left(), space.left()));
    place.moveTop(qMax(place.top(), space.top()));
    return place.topLeft();
}
