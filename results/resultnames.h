// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

/// The final paths of the two results of one run.
struct ResultPaths
{
    QString main; ///< the isolated instrument
    QString mix; ///< the mix without it

    bool operator==(const ResultPaths &) const = default;
};

/// The parts of both names.
struct ResultName
{
    QString folder;
    QString instrument; ///< as stored, lower case
    QString source; ///< the source's name without folder and last suffix
    QString extension; ///< lower case, without a dot
};

/// "FOLDER/vocals - Song.mp3" and "FOLDER/Mix Without vocals - Song.mp3". A source name
/// that would make the results' names too long for a file system is truncated.
[[nodiscard]] ResultPaths resultPaths(const ResultName &name);

/// The same names, or with the first number in brackets for which neither of the two exists.
[[nodiscard]] ResultPaths freeResultPaths(const ResultName &name,
                                          const std::function<bool(const QString &)> &exists);

/// Where a result is downloaded to before it is converted.
[[nodiscard]] QString downloadTarget(const QString &resultPath);
