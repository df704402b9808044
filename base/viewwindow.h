// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QQuickWidget>
#include <QWindow>

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

    /// From now on the window opens centred over that one, on its screen. Without a reference
    /// window, or when it no longer exists, the system chooses the position.
    void setReferenceWindow(QWindow *window) { m_referenceWindow = window; }

    /// Closes the window and emits showParent(), even when the window is hidden, for which Qt sends
    /// no close event.
    void closeWindow();

protected:
    /// Resizes the window and its view. A visible window that grows stays on its screen. The scale
    /// is passed in, so that everything in one opening uses the same one.
    void applyScale(double scale);
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
    void keepOnScreen();

    const QSize m_baseSize;
    const Sizing m_sizing;
    QPointer<QWindow> m_referenceWindow;
};
