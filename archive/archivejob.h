// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "archive/archiverecord.h"
#include "results/resultnames.h"

#include <functional>

/// What can be done with archived results: decided by which files exist.
using FileTest = std::function<bool(const QString &path)>;

/// Whether that path is a file on this machine.
[[nodiscard]] bool isFileHere(const QString &path);

/// Whether a path that the service names can be a media file of this machine. Everything else, such
/// as an address, a network share or a file of another kind, is not even looked for.
[[nodiscard]] bool isOriginalPath(const QString &path);

/// Whether the user's own file, which the service only names, is here.
[[nodiscard]] bool isOriginalHere(const QString &path, const FileTest &exists = isFileHere);

/// Where a record's results lie in a format. Both are empty when there is no folder or the record
/// cannot name files.
[[nodiscard]] ResultPaths archivePaths(const QString &folder, const ArchiveRecord &record,
                                       const QString &extension);

/// The picture of a button: "play" for a file that exists, else "download".
[[nodiscard]] QString buttonOf(const QString &path, const FileTest &exists);

/// The row that the view shows for a record: the service's keys and those that the window adds. The
/// stored paths are those of the record's own extension.
[[nodiscard]] QVariantMap archiveRow(const ArchiveRecord &record, const ResultPaths &stored,
                                     bool isDemoUser, const FileTest &exists);

/// How one result is got in one format.
struct ArchiveJob
{
    enum class Action {
        Play,
        Refuse, ///< a picture is asked for, and no file has one
        Download, ///< then convert
        Convert ///< from the stored file
    };
    Action action = Action::Refuse;
    QString stored; ///< the result in the format in which it was saved
    QString target; ///< the result in the format that is asked for

    bool operator==(const ArchiveJob &) const = default;
};

/// What to do for the target, a path in the format that is asked for, where the result was saved as
/// the stored one. Both paths must not be empty.
[[nodiscard]] ArchiveJob archiveJob(const ArchiveRecord &record, const QString &stored,
                                    const QString &target, const FileTest &exists);

/// How a demo is processed in full.
struct FullRun
{
    QString source; ///< the user's file, or only a name where the service names no usable path
    QString extension; ///< as stored, or when the picture is gone a chosen audio format
    bool lacksVideo = false; ///< the result would need a picture that is not here

    bool operator==(const FullRun &) const = default;
};

/// The audio format is that of the settings; MP3 stands in for none.
[[nodiscard]] FullRun fullRun(const ArchiveRecord &record, const QString &audioFormat,
                              const FileTest &exists);
