// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "archive/archiverecord.h"
#include "service/resultnames.h"

#include <functional>

/// What can be done with archived results: decided by which files exist.
using FileTest = std::function<bool(const QString &path)>;

/// Whether that path is a file on this machine.
[[nodiscard]] bool isFileHere(const QString &path);

/// Whether the user's own file, which the service only names, is here; never for a relative path.
[[nodiscard]] bool isOriginalHere(const QString &path, const FileTest &exists = isFileHere);

/// Where a record's results lie in a format. Both are empty when there is no folder or the record
/// cannot name files.
[[nodiscard]] ResultPaths archivePaths(const QString &folder, const ArchiveRecord &record,
                                       const QString &extension);

/// The picture of a button: "play" for a file that exists, else "download".
[[nodiscard]] QString buttonOf(const QString &path, const FileTest &exists);

/// The row that the view shows for a record: the service's keys and those that the window adds.
[[nodiscard]] QVariantMap archiveRow(const ArchiveRecord &record, const QString &folder,
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

/// The paths are those of archivePaths(), which must not be empty here.
[[nodiscard]] ArchiveJob archiveJob(const ArchiveRecord &record, const QString &folder, bool isMix,
                                    const QString &extension, const FileTest &exists);

/// The format for processing a demo in full: its own, or when its picture is gone the audio format
/// that is chosen in the settings, MP3 if none is.
[[nodiscard]] QString fullRunExtension(const ArchiveRecord &record, const QString &audioFormat,
                                       const FileTest &exists);
