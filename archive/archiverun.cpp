// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archiverun.h"

#include "archive/archivejob.h"
#include "base/mediaformats.h"
#include "service/convertingfile.h"
#include "service/tekoserver.h"

#include <QFile>

ArchiveRun::ArchiveRun(TekoServer &server, const QString &storedPath, const QString &targetPath,
                       const QString &sourcePath)
    : m_server(server)
    , m_storedPath(storedPath)
    , m_targetPath(targetPath)
    , m_sourcePath(sourcePath)
{ }

ArchiveRun::~ArchiveRun()
{
    m_cancelState = 1;
    m_worker.stop();
    m_server.abort();
    if (m_downloadId == -1)
        return;
    m_server.cancel(m_downloadId);
    if (QFile::exists(downloadPath()))
        QFile::remove(downloadPath());
}

QString ArchiveRun::downloadPath() const
{
    return downloadTarget(m_storedPath);
}

void ArchiveRun::download(int id, bool isMix)
{
    m_downloadId = id;
    m_server.download(id, downloadPath(), isMix);
}

bool ArchiveRun::isOriginalVideoMissing() const
{
    return isVideoOutput(mediaSuffix(m_storedPath)) && !isOriginalHere(m_sourcePath);
}

std::unique_ptr<ConvertingFile> ArchiveRun::converter(const QString &input,
                                                      const QString &output) const
{
    const QString picture = isOriginalHere(m_sourcePath) ? m_sourcePath : m_storedPath;
    return std::make_unique<ConvertingFile>(&m_cancelState, input, output, picture, true);
}
