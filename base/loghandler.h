// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

/// Returns the folder for the log file, or empty when there is none.
using LogFolderSource = std::function<QString()>;

/// Sends all messages of this run to one log file instead of Qt's default output. The file is made
/// by the first message, in the folder that the source returns then, on the thread of that message.
/// A file that cannot be opened is not tried again: the run's lines are dropped.
/// The message "LOG_CLOSE" closes the file permanently. Thread-safe.
void installLogHandler(LogFolderSource folder);
