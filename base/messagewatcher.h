// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QString>

class QMessageBox;

/// Stands in for a user where nobody sits before the screen: answers each message box of the
/// program with its OK button as soon as it is shown, and reports what it said. Lives on the GUI
/// thread.
class MessageWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit MessageWatcher(QObject *parent = nullptr);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /// Before the box closes.
    void shown(const QString &title, const QString &text);
};
