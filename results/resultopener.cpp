// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultopener.h"

#include "base/mediaformats.h"
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

void openInPlayer(const ProgramData &store, const QString &file)
{
    const bool isVideo = isVideoOutput(mediaSuffix(file));
    const QString player = isVideo ? store.defaultVideoPlayer() : store.defaultAudioPlayer();
    const QString program = store.stringValue(playerKey(player));
    if (program.isEmpty() || !QFile::exists(program))
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
    else
        QProcess::startDetached(program, {file});
}

QString openResult(const ProgramData &store, const ResultPaths &paths, const QString &type)
{
    if (type == QStringLiteral("folder")) {
        openFolderInBrowser(QFileInfo(paths.main).absolutePath());
        return {};
    }
    const QString file = type == QStringLiteral("mix") ? paths.mix : paths.main;
    if (!QFile::exists(file))
        return file;
    openInPlayer(store, file);
    return {};
}

void openFolderInBrowser(const QString &folder)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}
