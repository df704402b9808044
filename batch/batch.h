// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// Everything between the application object and its end: reads the arguments, prepares folders,
/// settings and service, and runs the files. Returns the process's exit code.
[[nodiscard]] int runBatch(const QStringList &arguments);
