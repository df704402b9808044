// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/viewwindow.h"

#include "base/guiscale.h"
#include "base/windowplace.h"

#include <QCloseEvent>
#include <QQmlError>
#include <QQuickItem>
#include <QScreen>
#include <QWindow>

#include <algorithm>

ViewWindow::ViewWindow(const QString &title, const QUrl &view, QSize baseSize, Sizing sizing)
    : m_baseSize(baseSize)
    , m_sizing(sizing)
{
    setWindowTitle(title);
    setResizeMode(QQuickWidget::SizeRootObjectToView);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSource(view);
    if (!rootObject())
        qFatal("The view %s cannot be loaded", qPrintable(view.toString()));
    setWindowFlags(windowFlags() & ~Qt::WindowMaximizeButtonHint);
}

void ViewWindow::closeWindow()
{
    if (isVisible())
        close();
    else
        windowClosed();
}

void ViewWindow::applyScale(double wanted)
{
    // Buttons below the edge of the screen could not be reached.
    const double scale = std::min(wanted, std::max(fittingScale(), minGuiScale));
    const QSize size(int(m_baseSize.width() * scale), int(m_baseSize.height() * scale));
    setMinimumSize(size);
    if (m_sizing == Sizing::Fixed)
        setMaximumSize(size);
    setViewProperty("scf", scale);
    if (isVisible())
        keepOnScreen();
}

double ViewWindow::fittingScale() const
{
    const QSize space = m_home ? m_home->space().size().shrunkBy(m_home->margins())
                               : screen()->availableGeometry().size();
    return std::min(double(space.width()) / m_baseSize.width(),
                    double(space.height()) / m_baseSize.height());
}

void ViewWindow::keepOnScreen()
{
    const QRect frame(pos(), size().grownBy(windowHandle()->frameMargins()));
    const QRect space = screen()->availableGeometry();
    if (!space.contains(frame))
        move(placeWithin(frame, space));
}

QQuickItem *ViewWindow::view() const
{
    return rootObject();
}

void ViewWindow::setViewProperty(const char *name, const QVariant &value)
{
    view()->setProperty(name, value);
}

QVariant ViewWindow::viewProperty(const char *name) const
{
    return view()->property(name);
}

void ViewWindow::connectView(const char *viewSignal, const char *member)
{
    if (!connect(view(), viewSignal, this, member))
        qFatal("The view has no %s for %s", viewSignal, member);
}

void ViewWindow::connectToView(const char *signal, const char *viewSignal)
{
    if (!connect(this, signal, view(), viewSignal))
        qFatal("The view has no %s for %s", viewSignal, signal);
}

void ViewWindow::showEvent(QShowEvent *event)
{
    if (m_home && !event->spontaneous())
        moveOverHome();
    QQuickWidget::showEvent(event);
}

void ViewWindow::moveOverHome()
{
    const QMargins margins = m_home->margins();
    QPoint place = placeOver(m_home->frame(), size().grownBy(margins), m_home->space());
    // Where the window's own frame is not known yet, as on X11, Qt moves what it encloses.
    if (frameGeometry() == geometry())
        place += QPoint(margins.left(), margins.top());
    move(place);
}

void ViewWindow::closeEvent(QCloseEvent *event)
{
    windowClosed();
    event->accept();
}
