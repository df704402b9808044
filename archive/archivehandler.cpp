// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archivehandler.h"

#include "base/guiscale.h"
#include "base/mediaformats.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "service/convertingfile.h"

#include <QDebug>
#include <QDir>
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

void ArchiveHandler::openWindow(const QString &storedPath, const QString &targetPath,
                                const QString &sourcePath)
{
    qInfo() << "ArchiveHandler::openWindow" << targetPath;
    m_run.reset();
    m_run = std::make_unique<ArchiveRun>(m_server, storedPath, targetPath, sourcePath);
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
    setMode("downloading");
    m_run->download(id, isMix);
}

void ArchiveHandler::downloadingFirst(double percents)
{
    if (!m_run)
        return;
    qInfo() << "ArchiveHandler::downloadingFirst" << percents;
    // Cut off: 100 % is said only of a file that is there.
    setViewProperty("downloadingPercent", int(percents));
    if (percents != 100.0)
        return;
    if (QFile::exists(m_run->downloadPath()))
        useDownload();
    else
        showError(tr("File not downloaded"));
}

void ArchiveHandler::useDownload()
{
    const QString download = m_run->downloadPath();
    const QString stored = m_run->storedPath();
    if (mediaSuffix(stored) == QStringLiteral("wav")) {
        if (QFile::rename(download, stored))
            doneDownloadedConvert();
        else
            showError(
                tr("The result could not be saved:\n\n%1").arg(QDir::toNativeSeparators(stored)));
    } else if (m_run->isOriginalVideoMissing()) {
        // Without the original video the stored one cannot be made again, but its sound can be.
        startWorker(download, m_run->targetPath(), &ConvertingFile::prepareFinal,
                    &ArchiveHandler::doneConvert);
    } else {
        startWorker(download, stored, &ConvertingFile::prepareFinal,
                    &ArchiveHandler::doneDownloadedConvert);
    }
}

void ArchiveHandler::doneDownloadedConvert()
{
    if (!m_run)
        return;
    qInfo() << "ArchiveHandler::doneDownloadedConvert";
    if (m_run->storedPath() == m_run->targetPath())
        doneConvert();
    else if (isMade(m_run->storedPath()))
        convert();
}

void ArchiveHandler::convert()
{
    qInfo() << "ArchiveHandler::convert";
    startWorker(m_run->storedPath(), m_run->targetPath(), &ConvertingFile::convertFile,
                &ArchiveHandler::doneConvert);
}

void ArchiveHandler::doneConvert()
{
    if (!m_run)
        return;
    qInfo() << "ArchiveHandler::doneConvert";
    if (!isMade(m_run->targetPath()))
        return;
    emit finishWork();
    closeWindow();
}

void ArchiveHandler::startWorker(const QString &input, const QString &output,
                                 void (ConvertingFile::*entry)(), void (ArchiveHandler::*slot)())
{
    setMode("converting");
    m_run->worker().start(m_run->converter(input, output), entry, &ConvertingFile::doneMain, this,
                          slot);
}

/// Reports an error when it is not.
bool ArchiveHandler::isMade(const QString &result)
{
    if (QFile::exists(result))
        return true;
    showError(tr("The result could not be converted:\n\n%1").arg(QDir::toNativeSeparators(result)));
    return false;
}

void ArchiveHandler::showError(QString message)
{
    qCritical() << "ArchiveHandler::showError" << message;
    m_run.reset();
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
    m_run.reset();
    emit ended();
}

void ArchiveHandler::setMode(const char *mode)
{
    setViewProperty("mode", QString::fromLatin1(mode));
}
