// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archivehandler.h"

#include "archive/archivejob.h"
#include "base/guiscale.h"
#include "base/mediaformats.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "service/convertingfile.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

ArchiveHandler::ArchiveHandler(ProgramData &store)
    : ViewWindow(tr("Downloading File"), QUrl(QStringLiteral("qrc:/qml/ArchiveHandler.qml")),
                 QSize(470, 350), Sizing::Fixed)
    , m_store(store)
    , m_server(store)
{
    setWindowFlags(Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowCloseButtonHint);
    setWindowModality(Qt::ApplicationModal);
    connect(&m_server, &TekoServer::showError, this, &ArchiveHandler::showError);
    connect(&m_server, &TekoServer::downloadingFirst, this, &ArchiveHandler::downloadingFirst);
    connectToView(SIGNAL(loaded()), SIGNAL(loaded()));
    connectView(SIGNAL(cancelProcess()), SLOT(cancelProcess()));
}

ArchiveHandler::~ArchiveHandler()
{
    // The worker reads the flag until its thread has ended.
    m_cancelState = 1;
    m_worker.stop();
}

void ArchiveHandler::openWindow(const QString &storedPath, const QString &targetPath,
                                const QString &sourcePath)
{
    qInfo() << "ArchiveHandler::openWindow" << targetPath;
    m_server.dropEarlierReplies();
    m_downloadId = -1;
    m_cancelState = 0;
    m_storedPath = storedPath;
    m_targetPath = targetPath;
    m_sourcePath = sourcePath;
    applyScale(usableGuiScale(m_store.guiScale()));
    setMode("");
    setViewProperty("fileName", QFileInfo(sourcePath).fileName());
    show();
    raise();
    emit loaded();
}

void ArchiveHandler::download(int id, bool isMix)
{
    qInfo() << "ArchiveHandler::download" << id;
    m_downloadId = id;
    setMode("downloading");
    m_server.download(id, downloadTarget(m_storedPath), isMix);
}

void ArchiveHandler::downloadingFirst(double percents)
{
    if (m_cancelState != 0)
        return;
    setViewProperty("downloadingPercent", percents);
    if (percents != 100.0)
        return;
    const QString file = downloadTarget(m_storedPath);
    if (QFile::exists(file))
        useDownload(file);
    else
        showError(tr("File not downloaded"));
}

void ArchiveHandler::useDownload(const QString &file)
{
    if (mediaSuffix(m_storedPath) == QStringLiteral("wav")) {
        if (QFile::rename(file, m_storedPath))
            doneDownloadedConvert();
        else
            showError(tr("The result could not be saved:\n\n%1").arg(m_storedPath));
        return;
    }
    // Without the user's own film the stored one cannot be made again, but its sound can be.
    const bool isFilmGone =
        isVideoOutput(mediaSuffix(m_storedPath)) && !isOriginalHere(m_sourcePath);
    if (isFilmGone)
        startWorker(file, m_targetPath, &ConvertingFile::prepareFinal,
                    &ArchiveHandler::doneConvert);
    else
        startWorker(file, m_storedPath, &ConvertingFile::prepareFinal,
                    &ArchiveHandler::doneDownloadedConvert);
}

void ArchiveHandler::doneDownloadedConvert()
{
    qInfo() << "ArchiveHandler::doneDownloadedConvert";
    if (m_storedPath == m_targetPath)
        doneConvert();
    else if (isMade(m_storedPath))
        convert();
}

void ArchiveHandler::convert()
{
    qInfo() << "ArchiveHandler::convert";
    startWorker(m_storedPath, m_targetPath, &ConvertingFile::convertFile,
                &ArchiveHandler::doneConvert);
}

void ArchiveHandler::doneConvert()
{
    qInfo() << "ArchiveHandler::doneConvert";
    if (!isMade(m_targetPath))
        return;
    emit finishWork();
    closeWindow();
}

void ArchiveHandler::startWorker(const QString &input, const QString &output,
                                 void (ConvertingFile::*entry)(), void (ArchiveHandler::*slot)())
{
    setMode("converting");
    const QString source = isOriginalHere(m_sourcePath) ? m_sourcePath : m_storedPath;
    m_worker.start(std::make_unique<ConvertingFile>(&m_cancelState, input, output, source, true),
                   entry, &ConvertingFile::doneMain, this, slot);
}

/// Tells the user when it is not.
bool ArchiveHandler::isMade(const QString &result)
{
    if (QFile::exists(result))
        return true;
    showError(tr("The result could not be converted:\n\n%1").arg(result));
    return false;
}

void ArchiveHandler::showError(QString message)
{
    qCritical() << "ArchiveHandler::showError" << message;
    m_server.abortDownloads();
    const QPointer<ArchiveHandler> self(this);
    MessageBoxCustom::critical(tr("File Processing Error"), message);
    if (self)
        closeWindow();
}

void ArchiveHandler::cancelProcess()
{
    qInfo() << "ArchiveHandler::cancelProcess";
    closeWindow();
}

void ArchiveHandler::windowClosed()
{
    m_cancelState = 1;
    m_worker.stop();
    m_server.abortDownloads();
    if (m_downloadId == -1)
        return;
    m_server.cancel(m_downloadId);
    m_downloadId = -1;
    const QString file = downloadTarget(m_storedPath);
    if (QFile::exists(file))
        QFile::remove(file);
}

void ArchiveHandler::setMode(const char *mode)
{
    setViewProperty("mode", QString::fromLatin1(mode));
}
