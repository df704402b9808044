// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// Keeps Qt's remarks about a machine without a screen off standard error. Comes before the
/// application object.
void quietPlatform();

/// Everything between the application object and its end: reads the arguments, prepares folders,
/// settings and service, and runs the files. Returns the process's exit code.
[[nodiscard]] int runBatch(const QStringList &arguments);
