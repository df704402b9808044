// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

#include <atomic>

class QObject;

/// The ffmpeg beside this program.
[[nodiscard]] QString ffmpegProgram();

/// Runs a program to its end and blocks the calling thread meanwhile. Its output goes nowhere and
/// its input is at its end. A cancel flag of 1 stops it: within 100 ms it is asked to, 500 ms later
/// it is made to. Returns whether it ran to its own end and reported success.
[[nodiscard]] bool runFfmpeg(QObject *parent, const QString &program, const QStringList &arguments,
                             const std::atomic<int> &cancelFlag);
