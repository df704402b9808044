// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/convertingfile.h"

#include "base/mediaformats.h"
#include "service/ffmpegrun.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace {

/// Tells an untouched file from one that ffmpeg has begun to write.
struct FileState
{
    explicit FileState(const QString &path)
    {
        const QFileInfo file(path);
        size = file.exists() ? file.size() : -1;
        modified = file.lastModified();
    }
    bool operator==(const FileState &) const = default;

    qint64 size;
    QDateTime modified;
};

/// Whether one more block can be written. If not, the last output may be truncated, which ffmpeg
/// does not always report: it exits with 0 for a Matroska file without its end.
bool hasRoomBeside(const QString &path)
{
    const QByteArray sample(4096, 'x');
    QTemporaryFile probe(QFileInfo(path).absolutePath() + QStringLiteral("/teko-XXXXXX"));
    return probe.open() && probe.write(sample) == sample.size() && probe.flush();
}

void removeIfThere(const QString &path)
{
    if (!path.isEmpty() && QFile::exists(path) && !QFile::remove(path))
        qWarning() << "Could not remove" << path;
}

} // namespace

ConvertingFile::ConvertingFile(const std::atomic<int> *cancelFlag, const QString &input,
                               const QString &output, const QString &original, bool main)
    : m_cancelFlag(cancelFlag)
    , m_files{input, output, original}
    , m_main(main)
{ }

void ConvertingFile::prepareToUpload()
{
    run(uploadArguments(m_files.input, m_files.output), m_files.output);
    emit doneUploadConverting();
}

void ConvertingFile::prepareFinal()
{
    const bool ran = runPlan(resultPlan(m_files));
    // An input that could not be converted is kept: it is the only copy of the result.
    if (isCancelled() || QFile::exists(m_files.output))
        removeIfThere(m_files.input);
    if (ran)
        emit m_main ? doneMain() : doneMix();
}

void ConvertingFile::convertFile()
{
    const ConversionPlan plan = archivedPlan(m_files);
    if (!plan.firstPass.isEmpty())
        qDebug() << "Pre init commad:" << plan.firstPass.join(QLatin1Char(' '));
    if (runPlan(plan))
        emit doneMain();
}

bool ConvertingFile::isCancelled() const
{
    return m_cancelFlag->load(std::memory_order_acquire) == 1;
}

void ConvertingFile::run(const QStringList &arguments, const QString &target)
{
    const FileState before(target);
    const bool isWhole = runFfmpeg(this, ffmpegProgram(), arguments, *m_cancelFlag)
        && QFileInfo(target).size() > 0 && hasRoomBeside(target);
    if ((!isWhole || isCancelled()) && FileState(target) != before)
        removeIfThere(target);
}

/// Returns whether the final pass ran.
bool ConvertingFile::runPlan(const ConversionPlan &plan)
{
    if (!plan.firstPass.isEmpty()) {
        removeIfThere(plan.temporary);
        run(plan.firstPass, plan.temporary);
    }
    const bool isFinalPassNeeded = !isCancelled();
    if (isFinalPassNeeded)
        run(plan.finalPass, m_files.output);
    removeIfThere(plan.temporary);
    return isFinalPassNeeded;
}
