// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/homewindow.h"

#include "base/windowplace.h"

#include <QScreen>
#include <QWindow>

HomeWindow::HomeWindow(QWindow *window)
    : QObject(window)
    , m_window(window)
{
    // Emitted before the system hides it.
    connect(window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            m_margins = m_window->frameMargins();
    });
}

QMargins HomeWindow::margins() const
{
    return m_window->isVisible() ? m_window->frameMargins() : m_margins;
}

QRect HomeWindow::frame() const
{
    return m_window->geometry().marginsAdded(margins());
}

QRect HomeWindow::space() const
{
    return m_window->screen()->availableGeometry();
}

void HomeWindow::keepOnScreen()
{
    const QPoint place = placeWithin(frame(), space());
    if (place != frame().topLeft())
        m_window->setPosition(place + QPoint(margins().left(), margins().top()));
}
