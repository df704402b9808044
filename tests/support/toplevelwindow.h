// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QApplication>
#include <QWidget>

/// The program's window of a kind; none before it was made.
template <typename Window> [[nodiscard]] Window *topLevelWindow()
{
    for (QWidget *candidate : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Window *>(candidate))
            return window;
    }
    return nullptr;
}
