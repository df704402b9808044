// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingrun.h"

#include "account/licencegate.h"
#include "base/mediaformats.h"
#include "processing/processingrules.h"
#include "service/convertingfile.h"
#include "service/pictureprobe.h"
#include "service/tekoserver.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace {

bool exists(const QString &path)
{
    return QFile::exists(path);
}

void remove(const QString &path)
{
    if (exists(path) && !QFile::remove(path))
        qWarning() << "Could not remove" << path;
}

} // namespace

QString Source::name() const
{
    return QFileInfo(path).completeBaseName();
}

bool Source::hasWav() const
{
    return exists(wavPath);
}

QString Source::discardWav()
{
    if (!hasWav() && !isUploaded)
        return {};
    remove(wavPath);
    isUploaded = false;
    return QFileInfo(wavPath).fileName();
}

ProcessingRun::ProcessingRun(TekoServer &server, Source &source, const QString &instrument,
                             const QString &extension)
    : m_server(server)
    , m_source(source)
    , m_instrument(instrument)
    , m_extension(extension)
{ }

ProcessingRun::~ProcessingRun()
{
    m_cancelState = 1;
    m_worker.stop();
    m_server.abort();
    if (areResultsReady()) {
        remove(downloadTarget(m_results.main));
        remove(downloadTarget(m_results.mix));
    }
    if (!m_source.isUploaded)
        remove(m_source.wavPath);
}

bool ProcessingRun::needsConversion(bool isSourceSent) const
{
    return m_extension != QStringLiteral("wav")
        || (!isSourceSent && mediaSuffix(m_source.path) != QStringLiteral("wav"));
}

bool ProcessingRun::prepareWithoutConverting(const QString &folder)
{
    m_source.isUploaded = false;
    m_source.wavPath = temporaryWavPath(folder, *QRandomGenerator64::global());
    if (!isFileOfThisMachine(m_source.path))
        return true;
    if (mediaSuffix(m_source.path) != QStringLiteral("wav"))
        return false;
    QFile::copy(m_source.path, m_source.wavPath);
    // A copy of a read-only file is read-only too, and could not be removed on Windows.
    QFile::setPermissions(m_source.wavPath,
                          QFile::permissions(m_source.wavPath) | QFile::WriteOwner);
    return true;
}

std::unique_ptr<ConvertingFile> ProcessingRun::uploadConverter() const
{
    return std::make_unique<ConvertingFile>(&m_cancelState, m_source.path, m_source.wavPath,
                                            QString(), true);
}

std::unique_ptr<PictureProbe> ProcessingRun::pictureProbe() const
{
    return std::make_unique<PictureProbe>(&m_cancelState, m_source.path);
}

std::unique_ptr<ConvertingFile> ProcessingRun::finalConverter(const QString &result) const
{
    return std::make_unique<ConvertingFile>(&m_cancelState, downloadTarget(result), result,
                                            m_source.path, result == m_results.main);
}

std::optional<bool> ProcessingRun::lacksPicture() const
{
    if (!isVideoOutput(m_extension) || !isVideoSource(mediaSuffix(m_source.path)))
        return false;
    if (!m_source.hasPicture)
        return {};
    return !*m_source.hasPicture;
}

QString ProcessingRun::send(const UserRecord &user)
{
    const QString mode = runMode(user);
    if (m_source.isUploaded) {
        m_server.repeatFile(m_instrument, QFileInfo(m_source.wavPath).fileName(), m_source.name(),
                            user.hash, mode, m_source.path, m_extension);
        return {};
    }
    m_server.uploadFile(m_instrument, m_source.wavPath, m_source.name(), user.hash, mode,
                        m_source.path, m_extension);
    return m_server.errorText();
}

void ProcessingRun::fetchResults(const QString &folder)
{
    m_results = freeResultPaths({folder, m_instrument, m_source.name(), m_extension}, exists);
    m_server.downloadBoth(m_songId, downloadTarget(m_results.main), downloadTarget(m_results.mix),
                          QFileInfo(m_source.wavPath).size());
}

bool ProcessingRun::updateDownloadPercent(bool isSecond, double percent)
{
    m_percents[isSecond ? 1 : 0] = percent;
    if (m_percents[0] != 100.0 || m_percents[1] != 100.0)
        return false;
    m_percents[0] = m_percents[1] = 0;
    return true;
}

QString ProcessingRun::moveDownloads() const
{
    for (const QString &result : {m_results.main, m_results.mix}) {
        if (!QFile::rename(downloadTarget(result), result))
            return result;
    }
    return {};
}

QString ProcessingRun::missingResult() const
{
    if (!exists(m_results.main))
        return m_results.main;
    return exists(m_results.mix) ? QString() : m_results.mix;
}

QStringList ProcessingRun::saveUnconverted() const
{
    const ResultPaths saved =
        freeResultPaths({QFileInfo(m_results.main).absolutePath(), m_instrument, m_source.name(),
                         QStringLiteral("wav")},
                        exists);
    QStringList paths;
    for (const auto &[result, path] :
         {std::pair(m_results.main, saved.main), {m_results.mix, saved.mix}}) {
        if (!exists(result) && QFile::rename(downloadTarget(result), path))
            paths << path;
    }
    return paths;
}
