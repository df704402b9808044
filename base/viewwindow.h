// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/homewindow.h"

#include <QPointer>
#include <QQuickWidget>

class QQuickItem;

/// A top-level window that hosts one view from the resources: what all window controllers share.
/// Loading a view that has errors is a programming mistake and ends the process.
class ViewWindow : public QQuickWidget
{
    Q_OBJECT

public:
    enum class Sizing { Fixed, Resizable };

    /// Sizes are in pixels at scale 1.
    ViewWindow(const QString &title, const QUrl &view, QSize baseSize, Sizing sizing);

    /// Lets the window open over another one and on its screen, from now on. Without that, and when
    /// the other one is gone, the system chooses the place.
    void setHome(const HomeWindow *home) { m_home = home; }

    /// Closes the window and emits showParent(), even when the window is hidden,
    /// for which Qt itself sends no close event.
    void closeWindow();

protected:
    /// Sizes the window and its view, no larger than the screen has room for. A visible window that
    /// grows stays on its screen. The scale is passed in, so that all that one opening does uses
    /// the same one.
    void applyScale(double wanted);
    [[nodiscard]] QQuickItem *view() const;
    void setViewProperty(const char *name, const QVariant &value);
    [[nodiscard]] QVariant viewProperty(const char *name) const;

    /// Joins the view's root object and a QObject by name; a name that does not exist ends the
    /// process. Signatures are those of the SIGNAL() and SLOT() macros.
    void connectView(const char *viewSignal, const char *member);
    void connectToView(const char *signal, const char *viewSignal);

    /// The window has closed, by whatever means. Subclasses stop their work and emit showParent().
    virtual void windowClosed() = 0;

    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The most that the screen has room for.
    [[nodiscard]] double fittingScale() const;
    void keepOnScreen();
    void moveOverHome();

    const QSize m_baseSize;
    const Sizing m_sizing;
    QPointer<const HomeWindow> m_home;
};
