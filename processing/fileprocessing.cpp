// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/fileprocessing.h"

#include "account/licencegate.h"
#include "base/guiscale.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "processing/openingchecks.h"
#include "processing/processingrules.h"
#include "results/resultopener.h"
#include "service/convertingfile.h"
#include "service/missingffmpeg.h"
#include "service/pictureprobe.h"

#include <QFile>
#include <QPointer>
#include <QQuickItem>

FileProcessing::FileProcessing(ProgramData &store)
    : ViewWindow(tr("TEKO: Selecting Instrument"),
                 QUrl(QStringLiteral("qrc:/qml/FileProcessing.qml")), QSize(470, 350),
                 Sizing::Fixed)
    , m_store(store)
    , m_memory(store)
    , m_server(store)
    , m_view(*view())
    , m_taskbar(*this, m_view, *view())
{
    connectServer();
    connectRoot();
}

void FileProcessing::connectServer()
{
    connect(&m_server, &TekoServer::showError, this, &FileProcessing::showError);
    connect(&m_server, &TekoServer::progressPercents, this, &FileProcessing::progressPercents);
    connect(&m_server, &TekoServer::savedWithId, this, &FileProcessing::savedWithId);
    connect(&m_server, &TekoServer::filesReady, this, &FileProcessing::filesReady);
    connect(&m_server, &TekoServer::remainSeconds, this, &FileProcessing::remainSeconds);
    connect(&m_server, &TekoServer::downloadingFirst, this, &FileProcessing::downloadingFirst);
    connect(&m_server, &TekoServer::downloadingSecond, this, &FileProcessing::downloadingSecond);
}

void FileProcessing::connectRoot()
{
    connectView(SIGNAL(close()), SLOT(cancel()));
    connectView(SIGNAL(proceedAnotherFile()), SLOT(proceedAnotherFile()));
    connectView(SIGNAL(proceedAnotherInstrument()), SLOT(proceedAnotherInstrument()));
    connectView(SIGNAL(openFinalFiles(QString)), SLOT(openFinalFiles(QString)));
    connectView(SIGNAL(getRemainsSeconds()), SLOT(getRemainsSeconds()));
    connectView(SIGNAL(openAnotherFile()), SIGNAL(openAnotherFile()));
    connectView(SIGNAL(startProcess()), SLOT(startProcess()));
    connectView(SIGNAL(cancelProcess()), SLOT(cancelProcess()));
    connectView(SIGNAL(checkRemains()), SLOT(checkRemains()));
    connectToView(SIGNAL(loaded()), SIGNAL(loaded()));
    connectToView(SIGNAL(forceProcessAnotherFile()), SIGNAL(forceProcessAnotherFile()));
    connectToView(SIGNAL(resetProccesing()), SIGNAL(resetProccesing()));
    connectToView(SIGNAL(changeLayerWithDelay(QString)), SIGNAL(changeLayerWithDelay(QString)));
}

bool FileProcessing::openWindow(const QString &path)
{
    qInfo() << "FileProcessing::openWindow" << path;
    m_run.reset();
    // While this waits the user may act: the latest action wins.
    m_opening = std::make_unique<QObject>();
    const QPointer<QObject> opening(m_opening.get());
    applyScale(usableGuiScale(m_store.guiScale()));
    m_view.presentFile(path, m_store);
    show();
    raise();
    if (closesOffline(m_server, m_store, opening))
        closeWindow();
    if (const QString old = opening ? m_source.discardWav() : QString(); !old.isEmpty())
        m_server.removeUploaded(old, opening);
    if (!opening)
        return false;
    m_source = {path, {}, false, {}};
    m_view.hideBusyOverlay();
    emit loaded();
    return !opening.isNull();
}

void FileProcessing::checkRemains()
{
    qInfo() << "FileProcessing::checkRemains";
    if (m_opening && closesAtFilesLimit(m_server, m_store, m_view, m_opening.get()))
        closeWindow();
}

void FileProcessing::beginRun()
{
    m_opening.reset();
    m_run.reset();
    m_run = std::make_unique<ProcessingRun>(m_server, m_source, m_view.instrument(),
                                            m_view.extension());
    m_view.resetCounters();
    emit resetProccesing();
}

void FileProcessing::startProcess()
{
    qInfo() << "FileProcessing::startProcess";
    beginRun();
    const bool isRepeat = m_source.isUploaded && m_source.hasWav();
    if (!canRun(isRepeat))
        return;
    if (isRepeat)
        continueWithWav();
    else
        prepareUpload();
}

bool FileProcessing::canRun(bool isSourceSent)
{
    if (!hasUsableFolders())
        return false;
    if (!m_run->needsConversion(isSourceSent) || !isFfmpegMissing())
        return true;
    m_run.reset();
    showMissingFfmpeg();
    return false;
}

bool FileProcessing::hasUsableFolders()
{
    const QString problem = unusableFolder(m_store.defaultPathSave(), m_store.defaultPathTemp());
    if (!problem.isEmpty())
        refuse(tr("File Processing Error"), problem);
    return problem.isEmpty();
}

void FileProcessing::prepareUpload()
{
    // The service has it, but its WAV file is gone from here.
    if (m_source.isUploaded)
        forgetUploadedFile();
    if (m_run->prepareWithoutConverting(m_store.defaultPathTemp()))
        return doneUploadConverting();
    m_view.showConverting(tr("Preparing a file for upload"));
    m_run->worker().start(m_run->uploadConverter(), &ConvertingFile::prepareToUpload,
                          &ConvertingFile::doneUploadConverting, this,
                          &FileProcessing::doneUploadConverting);
}

void FileProcessing::doneUploadConverting()
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::doneUploadConverting";
    if (QFile::exists(m_source.wavPath))
        continueWithWav();
    else
        refuse(tr("Converting Error"), tr("An error occurred preparing the file for upload"));
}

void FileProcessing::continueWithWav()
{
    const std::optional<bool> lacksPicture = m_run->lacksPicture();
    if (!lacksPicture) {
        if (m_source.isUploaded)
            m_view.showUpload(true);
        else
            m_view.showConverting(tr("Preparing a file for upload"));
        m_run->worker().start(m_run->pictureProbe(), &PictureProbe::probe, &PictureProbe::done,
                              this, &FileProcessing::pictureProbed);
    } else if (*lacksPicture) {
        refuse(tr("Converting Error"), noPictureText(m_run->extension()));
    } else {
        send();
    }
}

void FileProcessing::pictureProbed(bool hasPicture)
{
    m_source.hasPicture = hasPicture;
    continueWithWav();
}

void FileProcessing::send()
{
    m_view.showUpload(m_source.isUploaded);
    const QString problem = m_run->send(m_store.user());
    if (!problem.isEmpty())
        showError(problem);
}

void FileProcessing::runFromDemo(QString instrument, QString extension, int number)
{
    qInfo() << "FileProcessing::runFromDemo" << instrument << extension << number;
    m_view.setChoice(instrument, extension);
    beginRun();
    if (!canRun(true))
        return;
    m_view.showUpload(true);
    m_server.repeatDemoFile(m_store.user().hash, extension, number);
}

void FileProcessing::progressPercents(double percent)
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::progressPercents" << percent;
    m_view.setUploadPercent(percent);
}

void FileProcessing::savedWithId(int id)
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::savedWithId" << id;
    // A demo that runs in full has no WAV file here.
    m_source.isUploaded = !m_source.wavPath.isEmpty();
    m_run->setSongId(id);
    m_view.setLayer("processing");
    m_server.remains(id);
}

void FileProcessing::remainSeconds(int seconds)
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::remainSeconds" << seconds;
    m_view.setRemainingSeconds(seconds);
}

void FileProcessing::getRemainsSeconds()
{
    // The view still polls while it waits to show the download.
    if (!m_run || m_run->areResultsReady())
        return;
    qInfo() << "FileProcessing::getRemainsSeconds";
    m_server.remains(m_run->songId());
}

void FileProcessing::filesReady()
{
    if (!m_run || m_run->areResultsReady())
        return;
    qInfo() << "FileProcessing::filesReady";
    // A second request for the remaining time may still be open.
    m_server.abort();
    // The drive may have gone since the run began.
    if (!hasUsableFolders())
        return;
    if (m_view.remainingSeconds() > 0)
        m_view.setRemainingSeconds(0);
    emit changeLayerWithDelay(QStringLiteral("downloading"));
    m_run->fetchResults(m_store.defaultPathSave());
}

void FileProcessing::downloadingFirst(double percents)
{
    downloaded(false, percents);
}

void FileProcessing::downloadingSecond(double percents)
{
    downloaded(true, percents);
}

void FileProcessing::downloaded(bool isSecond, double percents)
{
    if (!m_run)
        return;
    qInfo() << (isSecond ? "FileProcessing::downloadingSecond" : "FileProcessing::downloadingFirst")
            << percents;
    m_view.setDownloadPercent(isSecond, percents);
    if (m_run->updateDownloadPercent(isSecond, percents))
        finalConvert();
}

void FileProcessing::finalConvert()
{
    qInfo() << "FileProcessing::finalConvert";
    if (m_run->extension() == QStringLiteral("wav"))
        return saveDownloads();
    m_view.setConvertingText(
        tr("Converting '%1 - file.wav'\nto selected output format").arg(m_run->instrument()));
    emit changeLayerWithDelay(QStringLiteral("converting"));
    m_run->worker().start(m_run->finalConverter(m_run->results().main),
                          &ConvertingFile::prepareFinal, &ConvertingFile::doneMain, this,
                          &FileProcessing::finalConvertMix);
}

void FileProcessing::saveDownloads()
{
    if (const QString unsaved = m_run->moveDownloads(); !unsaved.isEmpty())
        return showError(unsavedText(unsaved));
    m_memory.remember(m_run->songId(), m_run->results());
    emit changeLayerWithDelay(QStringLiteral("success"));
}

void FileProcessing::finalConvertMix()
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::finalConvertMix";
    const ResultPaths &results = m_run->results();
    if (!QFile::exists(results.main))
        return refuse(tr("Converting Error"),
                      unconvertedText(results.main, m_run->saveUnconverted()));
    m_view.setConvertingText(tr("Converting 'mix without %1 - file.wav'\nto selected output format")
                                 .arg(m_run->instrument()));
    m_run->worker().start(m_run->finalConverter(results.mix), &ConvertingFile::prepareFinal,
                          &ConvertingFile::doneMix, this, &FileProcessing::successProcces);
}

void FileProcessing::successProcces()
{
    if (!m_run)
        return;
    qInfo() << "FileProcessing::successProcces";
    if (const QString missing = m_run->missingResult(); !missing.isEmpty())
        return refuse(tr("Converting Error"), unconvertedText(missing, m_run->saveUnconverted()));
    m_memory.remember(m_run->songId(), m_run->results());
    m_view.setDemo(runMode(m_store.user()) == QStringLiteral("demo"));
    m_view.setLayer("success");
}

void FileProcessing::showError(QString message)
{
    qCritical() << "FileProcessing::showError" << message;
    // The service refused an upload that it had acknowledged before: the next run uploads it again.
    if (m_run && m_run->songId() == 0 && m_source.isUploaded && m_server.isJobRefused())
        forgetUploadedFile();
    m_run.reset();
    const QPointer<FileProcessing> self(this);
    MessageBoxCustom::critical(tr("File Processing Error"), message);
    if (self && !m_run)
        m_view.setLayer("select_instrument");
}

void FileProcessing::refuse(const QString &title, const QString &text)
{
    qCritical() << "FileProcessing" << text;
    m_run.reset();
    m_view.setLayer("select_instrument");
    MessageBoxCustom::critical(title, text);
}

void FileProcessing::cancelProcess()
{
    qInfo() << "FileProcessing::cancelProcess";
    const int id = m_run ? m_run->songId() : 0;
    m_run.reset();
    m_server.cancel(id);
    m_view.setLayer("select_instrument");
}

void FileProcessing::cancel()
{
    qInfo() << "FileProcessing::cancel";
    closeWindow();
}

void FileProcessing::windowClosed()
{
    m_opening.reset();
    if (m_view.isBusy())
        cancelProcess();
    m_run.reset();
    emit showParent();
}

void FileProcessing::proceedAnotherFile()
{
    qInfo() << "FileProcessing::proceedAnotherFile";
    m_view.setLayer("select_instrument");
    emit forceProcessAnotherFile();
}

void FileProcessing::proceedAnotherInstrument()
{
    qInfo() << "FileProcessing::proceedAnotherInstrument";
    m_view.setLayer("select_instrument");
}

void FileProcessing::removeUploadedFile(std::optional<std::chrono::milliseconds> timeout)
{
    forgetUploadedFile();
    // The service of this computer answers at once, and needs time of its own to end.
    const std::chrono::seconds maxWait(m_store.embeddedServiceLog().isEmpty() ? 3 : 1);
    m_server.waitForLastAnswers(this, timeout.value_or(maxWait));
}

void FileProcessing::forgetUploadedFile()
{
    if (const QString name = m_source.discardWav(); !name.isEmpty())
        m_server.requestRemoval(name);
}

void FileProcessing::openFinalFiles(QString type)
{
    qInfo() << "FileProcessing::openFinalFiles" << type;
    if (const QString missing = openResult(m_store, results(), type); !missing.isEmpty())
        MessageBoxCustom::critical(tr("File Processing Error"), missingText(missing));
}
