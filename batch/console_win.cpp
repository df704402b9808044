// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/console.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <atomic>

#include <qt_windows.h>

namespace {

QPointer<QObject> interruptContext;
std::function<void()> interruptCallback;

std::atomic<bool> wasInterrupted = false;
QString scratchFile;

BOOL endAtOnce()
{
    if (!scratchFile.isEmpty()) {
        QFile::remove(scratchFile);
        QDir().rmdir(QFileInfo(scratchFile).path());
    }
    return FALSE;
}

// Windows calls this on a thread of its own.
BOOL WINAPI handleControl(DWORD event)
{
    if (!interruptContext || wasInterrupted.exchange(true))
        return endAtOnce();
    QMetaObject::invokeMethod(interruptContext.data(), interruptCallback, Qt::QueuedConnection);
    // A console that closes takes the program along as soon as this returns, or a few seconds
    // later.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        WaitForSingleObject(GetCurrentProcess(), INFINITE);
    return TRUE;
}

} // namespace

// No file's name may hold * or ?. To Qt a bracket would be part of the pattern as well.
QStringList filesNamedBy(const QString &argument)
{
    const QFileInfo named(argument);
    const QString pattern = named.fileName().replace(QLatin1Char('['), QLatin1String("[[]"));
    QStringList files;
    if (pattern.contains(QLatin1Char('*')) || pattern.contains(QLatin1Char('?'))) {
        for (const QFileInfo &file :
             named.dir().entryInfoList({pattern}, QDir::Files, QDir::Name | QDir::IgnoreCase))
            files << file.absoluteFilePath();
    }
    return files.isEmpty() ? QStringList{named.absoluteFilePath()} : files;
}

bool isErrorOutputTerminal()
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode)
        && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool hasDisplay()
{
    return true;
}

void removeAtSuddenEnd(const QString &file)
{
    scratchFile = file;
    SetConsoleCtrlHandler(handleControl, TRUE);
}

void onInterrupt(QObject *context, const std::function<void()> &callback)
{
    interruptContext = context;
    interruptCallback = callback;
}
