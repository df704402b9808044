// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultnames.h"

namespace {

// File systems take 255 bytes a name; what a run adds to the source's name at most: a number in
// brackets, the download's ".wav" and the six characters of a side file.
constexpr qsizetype maxNameLength = 255;
constexpr qsizetype maxAddedLength = sizeof(" (99999)") + sizeof(".wav") + sizeof(".XXXXXX");

// A source whose results could not be written at all gives the head of its name.
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
    // One substitution for all places: a name that holds "%1" itself stays as it is.
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
