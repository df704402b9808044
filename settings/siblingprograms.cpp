// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "settings/siblingprograms.h"

QStringList siblingCandidates(const QString &name)
{
    const QString narrow = QString(name).remove(QLatin1Char(' '));
    QStringList candidates;
    for (const char *root : {"C:/Program Files", "C:/Program Files (x86)"}) {
        const auto add = [&](const QString &folder, const QString &program) {
            candidates << QStringLiteral("%1/%2/%3.exe").arg(QLatin1String(root), folder, program);
        };
        add(narrow, narrow);
        add(narrow, name);
        add(name, narrow);
        add(name, name);
    }
    return candidates;
}

QStringList siblingVersions(const QString &key)
{
    if (key == QStringLiteral("SongTrimlet"))
        return {QStringLiteral("Song Trimlet 6"), QStringLiteral("Song Trimlet 5")};
    if (key == QStringLiteral("VideoTrimlet"))
        return {QStringLiteral("Video Trimlet 3"), QStringLiteral("Video Trimlet 2")};
    if (key == QStringLiteral("KaraokeTrimlet"))
        return {QStringLiteral("Karaoke Trimlet 3"), QStringLiteral("Karaoke Trimlet 2")};
    return {};
}
