// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultnames.h"

namespace {

// File systems limit a name to 255 bytes. Added to the source's name, at most: a number in
// brackets, the download's ".wav" and QSaveFile's six random characters.
constexpr qsizetype maxNameLength = 255;
constexpr qsizetype maxAddedLength = sizeof(" (99999)") + sizeof(".wav") + sizeof(".XXXXXX");

// Truncated when the result name would exceed 255 bytes.
QString truncatedSource(const ResultName &name)
{
    const qsizetype taken =
        QStringLiteral("Mix Without %1 - .%2").arg(name.instrument, name.extension).toUtf8().size()
        + maxAddedLength;
    QString source = name.source;
    while (!source.isEmpty() && taken + source.toUtf8().size() > maxNameLength)
        source.chop(source.back().isLowSurrogate() ? 2 : 1);
    return source;
}

ResultPaths numberedPaths(const ResultName &name, int number)
{
    // One arg() call for all places, so that a "%1" in a name is not replaced.
    const auto fill = [&](const QString &pattern) {
        return pattern.arg(name.folder, name.instrument, truncatedSource(name), name.extension,
                           QString::number(number));
    };
    return {fill(QStringLiteral("%1/%2 - %3 (%5).%4")),
            fill(QStringLiteral("%1/Mix Without %2 - %3 (%5).%4"))};
}

} // namespace

ResultPaths resultPaths(const ResultName &name)
{
    const auto fill = [&](const QString &pattern) {
        return pattern.arg(name.folder, name.instrument, truncatedSource(name), name.extension);
    };
    return {fill(QStringLiteral("%1/%2 - %3.%4")),
            fill(QStringLiteral("%1/Mix Without %2 - %3.%4"))};
}

ResultPaths freeResultPaths(const ResultName &name,
                            const std::function<bool(const QString &)> &exists)
{
    ResultPaths paths = resultPaths(name);
    for (int number = 1; exists(paths.main) || exists(paths.mix); ++number)
        paths = numberedPaths(name, number);
    return paths;
}

QString downloadTarget(const QString &resultPath)
{
    return resultPath + QStringLiteral(".wav");
}
