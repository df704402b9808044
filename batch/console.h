// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

#include <functional>

/// Has what is written in UTF-8 shown as such.
void useUtf8Console();

/// Whether standard error is read by a person, on a terminal that knows the usual escape codes.
[[nodiscard]] bool isErrorOutputTerminal();

/// Whether windows could be shown here.
[[nodiscard]] bool hasDisplay();

/// Has the file, and the folder that it is alone in, removed when the user or the system ends the
/// program at once. One file a process.
void removeAtSuddenEnd(const QString &file);

/// Calls back on the context's thread, while the context lives, when the user interrupts the
/// program (Ctrl+C) or the system ends it. The second time ends the program at once, since the
/// first may find it waiting for a service that never answers. One context a process.
void onInterrupt(QObject *context, const std::function<void()> &callback);
