// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

/// The files, absolute, that an argument names: several for a pattern in its last part on Windows,
/// whose shell hands patterns on. One that fits nothing is returned as it is, made absolute.
[[nodiscard]] QStringList filesNamedBy(const QString &argument);

/// Whether standard error is a terminal that supports the usual escape codes.
[[nodiscard]] bool isErrorOutputTerminal();

/// Whether a display is available.
[[nodiscard]] bool hasDisplay();

/// Removes the file, and its folder if empty, if the process is killed by a signal (Ctrl+C, SIGTERM
/// or a closing console). One file per process.
void removeAtSuddenEnd(const QString &file);

/// Calls back on the context's thread, while the context lives, when the user interrupts the
/// program (Ctrl+C) or the system terminates it. The second interrupt exits immediately, since the
/// program may be waiting for a service that never answers. One context per process.
void onInterrupt(QObject *context, const std::function<void()> &callback);
