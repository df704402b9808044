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

    /// From now on the window opens centred over that one, on its screen. Without it, or when it no
    /// longer exists, the system chooses the position.
    void setHome(const HomeWindow *home) { m_home = home; }

    /// Closes the window and emits showParent(), even when the window is hidden, for which Qt sends
    /// no close event.
    void closeWindow();

protected:
    /// Resizes the window and its view, to no more than the screen has room for. A visible window
    /// that grows stays on its screen. The scale is passed in, so that everything in one opening
    /// uses the same one.
    void applyScale(double wanted);
    [[nodiscard]] QQuickItem *view() const;
    void setViewProperty(const char *name, const QVariant &value);
    [[nodiscard]] QVariant viewProperty(const char *name) const;

    /// Connects the view's root object and this window by name; a name that does not exist ends the
    /// process. Signatures are those of the SIGNAL() and SLOT() macros.
    void connectView(const char *viewSignal, const char *member);
    void connectToView(const char *signal, const char *viewSignal);

    /// Called when the window has closed, for any reason. Subclasses stop their work and emit
    /// showParent().
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
