// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultopener.h"

#include "base/programdata.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

QString playerKey(const QString &playerName)
{
    return QString(playerName).remove(QLatin1Char(' '));
}

void openInPlayer(const ProgramData &store, const QString &playerName, const QString &file)
{
    const QString program = store.stringValue(playerKey(playerName));
    if (program.isEmpty() || !QFile::exists(program))
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
    else
        QProcess::startDetached(program, {file});
}

void openFolderInBrowser(const QString &folder)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}
