// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/ffmpegrun.h"

#include "service/childlifetime.h"
#include "service/longpath.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

void waitForEnd(QProcess &process, const std::atomic<int> &cancelFlag)
{
    while (process.state() != QProcess::NotRunning
           && cancelFlag.load(std::memory_order_relaxed) == 0 && !process.waitForFinished(100)) { }
    if (cancelFlag.load(std::memory_order_relaxed) != 1)
        return;
    process.terminate();
    // Windows console programs ignore terminate().
    if (!process.waitForFinished(500))
        process.kill();
}

QStringList openableByAll(QStringList arguments)
{
    for (QString &argument : arguments)
        argument = openableByAll(argument);
    return arguments;
}

} // namespace

QString ffmpegProgram()
{
    return QFileInfo(u"%1/ffmpeg.exe"_s.arg(QCoreApplication::applicationDirPath()))
        .absoluteFilePath();
}

bool runFfmpeg(QObject *parent, const QString &program, const QStringList &arguments,
               const std::atomic<int> &cancelFlag)
{
    QProcess process(parent);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    bindLifetimeToParent(process);
    process.start(program, openableByAll(arguments), QIODevice::ReadWrite);
    waitForEnd(process, cancelFlag);
    process.close();
    return process.error() != QProcess::FailedToStart
        && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}
