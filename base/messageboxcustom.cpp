// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/messageboxcustom.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFont>

MessageBoxCustom::MessageBoxCustom(Icon icon, const QString &title, const QString &text,
                                   StandardButtons buttons)
{
    QFont font(QStringLiteral("Segoe UI"));
    font.setPixelSize(12);
    setFont(font);
    setTextFormat(Qt::PlainText);
    setIcon(icon);
    setWindowTitle(title);
    setText(text);
    setStandardButtons(buttons);
    setDefaultButton(NoButton);
    if (QAbstractButton *open = button(Open))
        open->setText(tr("Open Folder"));
    // A modal window that stays on top would cover it.
    const QWidget *modal = QApplication::activeModalWidget();
    if (modal && modal->windowFlags().testFlag(Qt::WindowStaysOnTopHint))
        setWindowFlag(Qt::WindowStaysOnTopHint);
}

QMessageBox::StandardButton MessageBoxCustom::run(Icon icon, const QString &title,
                                                  const QString &text, StandardButtons buttons)
{
    MessageBoxCustom box(icon, title, text, buttons);
    return StandardButton(box.exec());
}

QMessageBox::StandardButton MessageBoxCustom::warning(const QString &title, const QString &text,
                                                      StandardButtons buttons)
{
    return run(Warning, title, text, buttons);
}

QMessageBox::StandardButton MessageBoxCustom::information(const QString &title, const QString &text,
                                                          StandardButtons buttons)
{
    return run(Information, title, text, buttons);
}

QMessageBox::StandardButton MessageBoxCustom::critical(const QString &title, const QString &text,
                                                       StandardButtons buttons)
{
    return run(Critical, title, text, buttons);
}
