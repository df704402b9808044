// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/console.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int wakeUp[2] = {-1, -1};
QByteArray scratchFile;
QByteArray scratchFolder;

// Async-signal-safe calls only, here and below.
void endAtOnce(int number)
{
    unlink(scratchFile.constData());
    rmdir(scratchFolder.constData());
    std::signal(number, SIG_DFL);
    std::raise(number);
}

// One byte wakes the event loop.
void handleSignal(int number)
{
    std::signal(number, endAtOnce);
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakeUp[0], &byte, 1);
}

} // namespace

QStringList filesNamedBy(const QString &argument)
{
    return {QFileInfo(argument).absoluteFilePath()};
}

bool isErrorOutputTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void removeAtSuddenEnd(const QString &file)
{
    scratchFile = QFile::encodeName(file);
    scratchFolder = QFile::encodeName(QFileInfo(file).path());
    std::signal(SIGINT, endAtOnce);
    std::signal(SIGTERM, endAtOnce);
}

void onInterrupt(QObject *context, const std::function<void()> &callback)
{
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, wakeUp) != 0)
        return;
    auto *notifier = new QSocketNotifier(wakeUp[1], QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, [callback, notifier] {
        notifier->setEnabled(false);
        callback();
    });
    std::signal(SIGINT, handleSignal);
    std::signal(SIGTERM, handleSignal);
}
