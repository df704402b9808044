// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

class QWidget;

/// Arranges with the system what must be arranged before the first window: on Windows that the
/// taskbar puts all windows, and the installer's menu entry, under one button, and that the program
/// ends.
void prepareForWindows();

/// The bar that a window's taskbar button shows. Nothing where there is none. GUI thread only.
class TaskbarProgress final
{
public:
    /// The window must outlive this object.
    explicit TaskbarProgress(const QWidget &window);
    ~TaskbarProgress();

    void showPercent(double percent); ///< 0 to 100
    void showBusy(); ///< it is not known how far the work is
    void hide();

private:
    struct Bar;
    std::unique_ptr<Bar> m_bar;
};
