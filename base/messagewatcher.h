// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QString>

class QMessageBox;

/// Accepts message boxes automatically in unattended runs: closes each message box of the program
/// with OK as soon as it is shown, and reports its text. Lives on the GUI thread.
class MessageWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit MessageWatcher(QObject *parent = nullptr);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /// Emitted before the box closes.
    void shown(const QString &title, const QString &text);
};
