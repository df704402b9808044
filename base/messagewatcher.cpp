// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/messagewatcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <QMetaObject>

MessageWatcher::MessageWatcher(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool MessageWatcher::eventFilter(QObject *object, QEvent *event)
{
    auto *box = qobject_cast<QMessageBox *>(object);
    if (!box || event->type() != QEvent::Show)
        return false;
    // Queued: exec() has not entered its event loop yet.
    QMetaObject::invokeMethod(
        box,
        [this, box] {
            emit shown(box->windowTitle(), box->text());
            box->done(QMessageBox::Ok);
        },
        Qt::QueuedConnection);
    return false;
}
