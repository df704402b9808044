// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>

/// Children of this process by name; none on systems without /proc.
[[nodiscard]] inline QStringList childProcesses(const QByteArray &name)
{
    QStringList found;
    for (const QString &pid : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        QFile file("/proc/" + pid + "/stat");
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray stat = file.readAll();
        const QByteArray parent = stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1);
        if (stat.contains('(' + name) && parent.toLongLong() == QCoreApplication::applicationPid())
            found << pid;
    }
    return found;
}
