// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/mediaformats.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "processing/fileprocessing.h"
#include "results/resultopener.h"
#include "service/convertingfile.h"

#include <QFile>
#include <QFileInfo>

void FileProcessing::filesReady()
{
    if (isCancelled() || areResultsReady())
        return;
    qInfo() << "FileProcessing::filesReady";
    // A second question about the remaining time may still be open.
    m_server.dropEarlierReplies();
    if (viewProperty("remainingProcessingTime").toInt() > 0)
        setViewProperty("remainingProcessingTime", 0);
    emit changeLayerWithDelay(QStringLiteral("downloading"));
    m_results = freeResultPaths({m_store.defaultPathSave(), instrument(),
                                 QFileInfo(m_sourcePath).completeBaseName(), extension()},
                                [](const QString &path) { return QFile::exists(path); });
    m_server.downloadBoth(m_savedId, downloadTarget(m_results.main), downloadTarget(m_results.mix),
                          QFileInfo(m_tempWavPath).size());
}

void FileProcessing::downloadingFirst(double percents)
{
    downloaded(0, "downloading1Percent", percents);
}

void FileProcessing::downloadingSecond(double percents)
{
    downloaded(1, "downloading2Percent", percents);
}

void FileProcessing::downloaded(int which, const char *property, double percents)
{
    if (isCancelled())
        return;
    setViewProperty(property, percents);
    m_downloadPercent[which] = percents;
    if (m_downloadPercent[0] == 100.0 && m_downloadPercent[1] == 100.0)
        finalConvert();
}

void FileProcessing::finalConvert()
{
    if (isCancelled())
        return;
    qInfo() << "FileProcessing::finalConvert";
    m_downloadPercent[0] = m_downloadPercent[1] = 0;
    if (extension() == QStringLiteral("wav")) {
        moveDownloads();
        return;
    }
    setViewProperty("convertingText",
                    tr("Converting '%1 - file.wav'\nto selected output format").arg(instrument()));
    emit changeLayerWithDelay(QStringLiteral("converting"));
    m_worker.start(finalConverter(m_results.main, true), &ConvertingFile::prepareFinal,
                   &ConvertingFile::doneMain, this, &FileProcessing::finalConvertMix);
}

void FileProcessing::moveDownloads()
{
    for (const QString &result : {m_results.main, m_results.mix}) {
        if (!QFile::rename(downloadTarget(result), result)) {
            showError(tr("The result could not be saved:\n\n%1").arg(result));
            return;
        }
    }
    emit changeLayerWithDelay(QStringLiteral("success"));
}

void FileProcessing::finalConvertMix()
{
    if (isCancelled())
        return;
    qInfo() << "FileProcessing::finalConvertMix";
    setViewProperty(
        "convertingText",
        tr("Converting 'mix without %1 - file.wav'\nto selected output format").arg(instrument()));
    m_worker.start(finalConverter(m_results.mix, false), &ConvertingFile::prepareFinal,
                   &ConvertingFile::doneMix, this, &FileProcessing::successProcces);
}

std::unique_ptr<ConvertingFile> FileProcessing::finalConverter(const QString &result, bool isMain)
{
    return std::make_unique<ConvertingFile>(&m_cancelState, downloadTarget(result), result,
                                            m_sourcePath, isMain);
}

void FileProcessing::successProcces()
{
    if (isCancelled())
        return;
    qInfo() << "FileProcessing::successProcces";
    for (const QString &result : {m_results.main, m_results.mix}) {
        if (!QFile::exists(result)) {
            refuse(tr("Converting Error"),
                   tr("The result could not be converted:\n\n%1").arg(result));
            return;
        }
    }
    setViewProperty("isDemo", runModeOfUser() == QStringLiteral("demo"));
    setLayer("success");
}

void FileProcessing::discardDownloads()
{
    m_server.abortDownloads();
    if (!areResultsReady())
        return;
    QFile::remove(downloadTarget(m_results.main));
    QFile::remove(downloadTarget(m_results.mix));
}

void FileProcessing::openFinalFiles(QString type)
{
    qInfo() << "FileProcessing::openFinalFiles" << type;
    if (type == QStringLiteral("folder")) {
        openFolderInBrowser(QFileInfo(m_results.main).absolutePath());
        return;
    }
    const QString file = type == QStringLiteral("mix") ? m_results.mix : m_results.main;
    if (!QFile::exists(file)) {
        MessageBoxCustom::critical(tr("File Processing Error"),
                                   tr("Downloaded files not exists:\n\n%1").arg(file));
        return;
    }
    const bool isVideo = isVideoOutput(mediaSuffix(file));
    openInPlayer(m_store, isVideo ? m_store.defaultVideoPlayer() : m_store.defaultAudioPlayer(),
                 file);
}
