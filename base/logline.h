// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include <optional>

/// The line of the log file for a message; empty for the one message that is never logged.
[[nodiscard]] std::optional<QString> logLine(QtMsgType type, const char *category,
                                             const QString &message);

/// "log_4_7_2025_9_5_3.txt": month, day, year, hour, minute and second, not zero-filled.
[[nodiscard]] QString logFileName(const QDateTime &time);
