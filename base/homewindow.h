// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMargins>
#include <QObject>
#include <QRect>

class QWindow;

/// The main window as the windows know it that open in its place, while it is hidden as well. GUI
/// thread only.
class HomeWindow final : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the window and dies with it.
    explicit HomeWindow(QWindow *window);

    /// The widths of its frame. X11 forgets them when a window is hidden.
    [[nodiscard]] QMargins margins() const;
    [[nodiscard]] QRect frame() const;
    /// What the screen has room for.
    [[nodiscard]] QRect space() const;
    /// Moves the window back into that, no farther than it has to be.
    void keepOnScreen();

private:
    QWindow *const m_window;
    QMargins m_margins; ///< of the time before it was hidden
};
