// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/appfolder.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr int noFolder = -104;
constexpr int noSubfolder = -118;

bool ensureFolder(const QString &path)
{
    return QFileInfo::exists(path) || QDir().mkpath(path);
}

} // namespace

AppFolderOutcome makeAppFolder(const QString &firstChoice, const QString &secondChoice)
{
    QString folder = firstChoice;
    // An existing second choice is left alone: it belongs to an earlier installation.
    if (!ensureFolder(firstChoice) && !QFileInfo::exists(secondChoice)) {
        if (!QDir().mkpath(secondChoice))
            return {{}, noFolder, QStringLiteral("Couldn't create application documents folder")};
        folder = secondChoice;
    }
    for (const char *name : {"Save", "Audio", "Logs", "Temp"}) {
        if (!ensureFolder(QStringLiteral("%1/%2").arg(folder, QLatin1String(name)))) {
            const auto text = QStringLiteral("Couldn't create application documents folder: '%1'");
            return {folder, noSubfolder, text.arg(folder)};
        }
    }
    return {folder, 0, {}};
}
