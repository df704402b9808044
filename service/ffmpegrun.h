// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

#include <atomic>

class QObject;

/// The ffmpeg beside this program.
[[nodiscard]] QString ffmpegProgram();

/// Runs a program and blocks the calling thread until it has ended. stdout and stderr are
/// discarded, stdin is the null device. When the cancel flag becomes 1, terminate() is called
/// within 100 ms and kill() 500 ms later. Returns whether the program exited normally with code 0.
[[nodiscard]] bool runFfmpeg(QObject *parent, const QString &program, const QStringList &arguments,
                             const std::atomic<int> &cancelFlag);
