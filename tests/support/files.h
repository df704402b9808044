// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDir>
#include <QFile>

/// Makes a file, or replaces it; gives its path back.
inline QString writeFile(const QString &path, const QByteArray &content = {})
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(path));
    return path;
}

/// What is in a file; "no such file" without one.
[[nodiscard]] inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "no such file";
}

/// Whether nobody but the owner can read a file or folder. On Windows that is the user's folder's
/// matter.
[[nodiscard]] inline bool isPrivate([[maybe_unused]] const QString &path)
{
#ifdef Q_OS_WIN
    return true;
#else
    return !QFile::permissions(path).testAnyFlags(QFile::ReadOther | QFile::ReadGroup);
#endif
}

/// The names of the files of a folder, hidden ones included.
[[nodiscard]] inline QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

/// The files of a folder as "name=content".
[[nodiscard]] inline QStringList contentsOf(const QString &folder)
{
    QStringList found;
    for (const QString &name : filesIn(folder))
        found << name + '=' + QString::fromUtf8(readFile(folder + '/' + name));
    return found;
}
