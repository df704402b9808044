// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/console.h"

#include <QPointer>

#include <atomic>

#include <io.h>
#include <qt_windows.h>

namespace {

QPointer<QObject> interruptContext;
std::function<void()> interruptCallback;

std::atomic<bool> wasInterrupted = false;

// Windows calls this on a thread of its own.
BOOL WINAPI handleControl(DWORD)
{
    if (!interruptContext || wasInterrupted.exchange(true))
        return FALSE;
    QMetaObject::invokeMethod(interruptContext.data(), interruptCallback, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

bool isErrorOutputTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

bool hasDisplay()
{
    return true;
}

void onInterrupt(QObject *context, const std::function<void()> &callback)
{
    interruptContext = context;
    interruptCallback = callback;
    SetConsoleCtrlHandler(handleControl, TRUE);
}
