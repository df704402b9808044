// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/settingsfile.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isReadable(const QByteArray &content)
{
    // On a copy, because all QSettings objects on one file share their cache.
    QTemporaryFile copy;
    if (!copy.open() || copy.write(content) != content.size() || !copy.flush())
        return true;
    const QSettings settings(copy.fileName(), QSettings::IniFormat);
    // Lines are parsed only when keys are requested.
    (void)settings.allKeys();
    return settings.status() == QSettings::NoError;
}

// At least one line per key. A file that Qt has just written also has a section line and ends in a
// newline; one that needed no write is as an editor left it.
bool isWhole(const QByteArray &content, qsizetype keys, bool isWritten)
{
    const bool isEnded = content.isEmpty() || content.endsWith('\n');
    const qsizetype lines = content.count('\n') + (isEnded ? 0 : 1);
    return keys == 0 || (isWritten ? isEnded && lines > keys : lines >= keys);
}

void putBack(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qCritical() << "The settings file was cut off and could not be put back:" << path;
}

} // namespace

void keepDamagedSettings(const QString &file)
{
    const QByteArray content = contentOf(file);
    if (isReadable(content))
        return;
    QString copy = file + QStringLiteral(".damaged");
    for (int number = 2; QFileInfo::exists(copy); ++number) {
        if (contentOf(copy) == content)
            return;
        copy = QStringLiteral("%1.damaged-%2").arg(file).arg(number);
    }
    if (QFile::copy(file, copy))
        qWarning() << "The settings file has lines that cannot be read; a copy is kept:" << copy;
    else
        qWarning() << "The settings file has lines that cannot be read:" << file;
}

bool writeSettings(QSettings &settings)
{
    const QString file = settings.fileName();
    keepDamagedSettings(file);
    const QByteArray before = contentOf(file);
    settings.sync();
    // Qt 6.4 reports success for a file that was cut off by a full disk (QTBUG-75077).
    const QByteArray after = contentOf(file);
    const bool isWritten = after != before;
    if (!isWhole(after, settings.allKeys().size(), isWritten)) {
        if (isWritten)
            putBack(file, before);
        return false;
    }
    // The status of a QSettings object stays at its first error. A new one retries what is still to
    // be written and reports only that.
    return QSettings(file, QSettings::IniFormat).status() == QSettings::NoError;
}
