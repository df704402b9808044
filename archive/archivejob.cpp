// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archivejob.h"

#include "base/mediaformats.h"

#include <QDir>
#include <QFileInfo>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

bool canGivePicture(const ArchiveRecord &record, const QString &stored, const FileTest &exists)
{
    return (isVideoOutput(record.extension) && exists(stored))
        || (isVideoOutput(mediaSuffix(record.localFilePath))
            && isOriginalHere(record.localFilePath, exists));
}

/// Falls back to MP3 for an unset or unknown format.
QString soundFormat(const QString &chosen)
{
    const bool isOffered = audioFormats().contains(chosen);
    return (isOffered ? chosen : audioFormats().constFirst()).toLower();
}

QString buttonFor(bool isHere)
{
    return isHere ? u"play"_s : u"download"_s;
}

} // namespace

bool isFileHere(const QString &path)
{
    return !path.isEmpty() && QFileInfo(path).isFile();
}

bool isOriginalPath(const QString &path)
{
    const QString plain = QDir::fromNativeSeparators(path);
    // Accessing a file on a share tells that machine who the user is. A leading colon is a path in
    // the program's own resources.
    if (!QDir::isAbsolutePath(plain) || plain.startsWith(u"//"_s) || plain.startsWith(u':'))
        return false;
    const QString suffix = mediaSuffix(plain);
    return isVideoSource(suffix) || audioSourceSuffixes().contains(suffix);
}

bool isOriginalHere(const QString &path, const FileTest &exists)
{
    return isOriginalPath(path) && exists(path);
}

ResultPaths archivePaths(const QString &folder, const ArchiveRecord &record,
                         const QString &extension)
{
    if (folder.isEmpty() || !canNameFiles(record))
        return {};
    return resultPaths({folder, record.instrument, record.name, extension});
}

QString buttonOf(const QString &path, const FileTest &exists)
{
    return buttonFor(exists(path));
}

QVariantMap archiveRow(const ArchiveRecord &record, const ResultPaths &stored, bool isDemoUser,
                       const FileTest &exists)
{
    // Each file check counts with ten thousand rows.
    const bool hasMain = exists(stored.main);
    const bool hasMix = exists(stored.mix);
    const bool isVideo = (isVideoSource(mediaSuffix(record.localFilePath))
                          && isOriginalHere(record.localFilePath, exists))
        || (hasMain && hasMix && isVideoSource(mediaSuffix(stored.main)));
    return {{u"name"_s, record.name},
            {u"deleted"_s, record.deleted},
            {u"instrument"_s, record.instrument},
            {u"extension"_s, record.extension},
            {u"demoFile"_s, record.demoFile},
            {u"local_file_path"_s, record.localFilePath},
            {u"ai_id"_s, record.id},
            {u"btnInstrument"_s, buttonFor(hasMain)},
            {u"btnMix"_s, buttonFor(hasMix)},
            {u"demoUser"_s, isDemoUser ? u"yes"_s : u"no"_s},
            {u"isVideo"_s, isVideo},
            {u"isUsable"_s, canNameFiles(record)}};
}

bool ArchiveJob::needsConversion() const
{
    const bool isPlainDownload = stored == target && mediaSuffix(stored) == u"wav";
    return action == Action::Convert || (action == Action::Download && !isPlainDownload);
}

ArchiveJob archiveJob(const ArchiveRecord &record, const QString &stored, const QString &target,
                      const FileTest &exists)
{
    ArchiveJob job{ArchiveJob::Action::Refuse, stored, target};
    if (exists(target))
        job.action = ArchiveJob::Action::Play;
    else if (!isVideoOutput(mediaSuffix(target)) || canGivePicture(record, stored, exists))
        job.action = exists(stored) ? ArchiveJob::Action::Convert : ArchiveJob::Action::Download;
    return job;
}

FullRun fullRun(const ArchiveRecord &record, const QString &audioFormat, const FileTest &exists)
{
    const bool isHere = isOriginalHere(record.localFilePath, exists);
    FullRun run;
    run.extension =
        isVideoSource(record.extension) && !isHere ? soundFormat(audioFormat) : record.extension;
    run.lacksVideo = isVideoOutput(run.extension.toLower()) && !isHere;
    run.source = isOriginalPath(record.localFilePath) ? record.localFilePath
                                                      : record.name + u'.' + run.extension;
    return run;
}
