// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMessageBox>

/// The program's modal message box. Its text is always plain, since much of it comes from outside.
/// Each variant runs the box modally on the GUI thread and returns the button that closed it. The
/// button Open stands for a folder.
class MessageBoxCustom final : public QMessageBox
{
    Q_OBJECT

public:
    static StandardButton warning(const QString &title, const QString &text,
                                  StandardButtons buttons = Ok);
    static StandardButton information(const QString &title, const QString &text,
                                      StandardButtons buttons = Ok);
    static StandardButton critical(const QString &title, const QString &text,
                                   StandardButtons buttons = Ok);

private:
    MessageBoxCustom(Icon icon, const QString &title, const QString &text, StandardButtons buttons);
    static StandardButton run(Icon icon, const QString &title, const QString &text,
                              StandardButtons buttons);
};
