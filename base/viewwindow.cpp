// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/viewwindow.h"

#include "base/windowplace.h"

#include <QCloseEvent>
#include <QQmlError>
#include <QQuickItem>
#include <QScreen>

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

void ViewWindow::applyScale(double scale)
{
    const QSize size(int(m_baseSize.width() * scale), int(m_baseSize.height() * scale));
    setMinimumSize(size);
    if (m_sizing == Sizing::Fixed)
        setMaximumSize(size);
    setViewProperty("scf", scale);
    if (isVisible())
        keepOnScreen();
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
    if (m_referenceWindow && !event->spontaneous()) {
        const QSize whole = size().grownBy(m_referenceWindow->frameMargins());
        move(placeOver(m_referenceWindow->frameGeometry(), whole,
                       m_referenceWindow->screen()->availableGeometry()));
    }
    QQuickWidget::showEvent(event);
}

void ViewWindow::closeEvent(QCloseEvent *event)
{
    windowClosed();
    event->accept();
}
