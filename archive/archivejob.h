// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "archive/archiverecord.h"
#include "results/resultnames.h"

#include <functional>

/// Decides what can be done with archived results from which files exist.
using FileTest = std::function<bool(const QString &path)>;

/// Whether that path is a file on this machine.
[[nodiscard]] bool isFileHere(const QString &path);

/// Whether a path from the service can be a media file of this machine. Anything else, such as a
/// URL, a network share or a file of another kind, is never accessed.
[[nodiscard]] bool isOriginalPath(const QString &path);

/// Whether the user's own file, whose path comes from the service, exists on this machine.
[[nodiscard]] bool isOriginalHere(const QString &path, const FileTest &exists = isFileHere);

/// The paths of a record's results in a format. Both are empty when there is no folder or the
/// record cannot name files.
[[nodiscard]] ResultPaths archivePaths(const QString &folder, const ArchiveRecord &record,
                                       const QString &extension);

/// The picture of a button: "play" for a file that exists, else "download".
[[nodiscard]] QString buttonOf(const QString &path, const FileTest &exists);

/// The row that the view shows for a record: the service's keys and those that the window adds. The
/// stored paths are those of the record's own extension.
[[nodiscard]] QVariantMap archiveRow(const ArchiveRecord &record, const ResultPaths &stored,
                                     bool isDemoUser, const FileTest &exists);

/// How to obtain one result in one format.
struct ArchiveJob
{
    enum class Action {
        Play,
        Refuse, ///< a video is requested, and no file has its picture
        Download, ///< then convert
        Convert ///< from the stored file
    };
    Action action = Action::Refuse;
    QString stored; ///< the result in the format in which it was saved
    QString target; ///< the result in the requested format

    /// Whether ffmpeg is run for it.
    [[nodiscard]] bool needsConversion() const;
    bool operator==(const ArchiveJob &) const = default;
};

/// The job for the target, a path in the requested format; the result was saved at the stored path.
/// Both paths must not be empty.
[[nodiscard]] ArchiveJob archiveJob(const ArchiveRecord &record, const QString &stored,
                                    const QString &target, const FileTest &exists);

/// How a demo is processed in full.
struct FullRun
{
    QString source; ///< the user's file, or only a name when the service sent no usable path
    QString extension; ///< as stored, or the audio format when the original video is missing
    bool lacksVideo = false; ///< the result would need an original video that is missing

    bool operator==(const FullRun &) const = default;
};

/// The audio format is that of the settings; MP3 replaces an unset one.
[[nodiscard]] FullRun fullRun(const ArchiveRecord &record, const QString &audioFormat,
                              const FileTest &exists);
