// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// Silences Qt's warnings about a machine without a display. Call before the application object is
/// created.
void quietPlatform();

/// Runs the program within an existing application object: reads the arguments, prepares folders,
/// settings and service, and processes the files. Returns the process's exit code.
[[nodiscard]] int runBatch(const QStringList &arguments);
