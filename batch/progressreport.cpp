// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/progressreport.h"

#include <QObject>

#include <algorithm>

namespace {

constexpr int barWidth = 24;

// Shares of the bar in percent, roughly the time that each stage takes with the local service.
double overallPercent(const BatchProgress &progress)
{
    if (progress.layer == QStringLiteral("uploading"))
        return 5 + progress.uploaded * 0.1;
    if (progress.layer == QStringLiteral("processing"))
        return 15 + 60.0 / (1 + progress.secondsLeft / 10.0);
    if (progress.layer == QStringLiteral("downloading"))
        return 75 + progress.downloaded * 0.15;
    if (progress.layer == QStringLiteral("success"))
        return 100;
    return progress.downloaded >= 100 ? 90 : 0;
}

} // namespace

QString stageText(const BatchProgress &progress)
{
    if (progress.layer == QStringLiteral("converting"))
        return QObject::tr("converting");
    if (progress.layer == QStringLiteral("uploading"))
        return QObject::tr("uploading %1 %").arg(progress.uploaded, 0, 'f', 1);
    if (progress.layer == QStringLiteral("processing")) {
        return progress.secondsLeft > 0
            ? QObject::tr("processing, %1 s left").arg(progress.secondsLeft)
            : QObject::tr("processing");
    }
    if (progress.layer == QStringLiteral("downloading"))
        return QObject::tr("downloading %1 %").arg(progress.downloaded, 0, 'f', 0);
    if (progress.layer == QStringLiteral("success"))
        return QObject::tr("done");
    return {};
}

QString progressBar(const BatchProgress &progress, const QString &name, int columns)
{
    const int filled = std::clamp(int(overallPercent(progress) * barWidth / 100), 0, barWidth);
    const QString bar =
        QString(filled, QLatin1Char('#')) + QString(barWidth - filled, QLatin1Char('.'));
    return QStringLiteral("[%1] %2  %3").arg(bar, stageText(progress), name).left(columns);
}

QString printable(const QString &text)
{
    QString shown = text.simplified();
    for (QChar &character : shown) {
        if (character.category() == QChar::Other_Control
            || character.category() == QChar::Other_Format)
            character = QChar::ReplacementCharacter;
    }
    return shown;
}
