// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/logline.h"

#include <QLatin1String>

std::optional<QString> logLine(QtMsgType type, const char *category, const QString &message)
{
    // Scaled views pass through a size of 0 while they load; Qt complains each time and nobody can
    // act on it.
    static const QLatin1String noise(
        "QFont::setPointSizeF: Point size <= 0 (0.000000), must be greater than 0");
    switch (type) {
    case QtDebugMsg:
        return (qstrcmp(category, "qml") == 0 ? QLatin1String("QML: ") : QLatin1String("D: "))
            + message;
    case QtWarningMsg:
        if (message == noise)
            return std::nullopt;
        return QLatin1String("Warning: ") + message;
    case QtCriticalMsg:
        return QLatin1String("Critical: ") + message;
    case QtFatalMsg:
        return QLatin1String("Fatal: ") + message;
    case QtInfoMsg:
        break;
    }
    return message;
}

QString logFileName(const QDateTime &time)
{
    const QDate date = time.date();
    const QTime clock = time.time();
    return QStringLiteral("log_%1_%2_%3_%4_%5_%6.txt")
        .arg(date.month())
        .arg(date.day())
        .arg(date.year())
        .arg(clock.hour())
        .arg(clock.minute())
        .arg(clock.second());
}
