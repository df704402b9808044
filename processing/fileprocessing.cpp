// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/fileprocessing.h"

#include "account/licencegate.h"
#include "base/guiscale.h"
#include "base/mediaformats.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "processing/processingrules.h"
#include "service/connectivity.h"
#include "service/convertingfile.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QQuickItem>
#include <QRandomGenerator>

FileProcessing::FileProcessing(ProgramData &store)
    : ViewWindow(tr("TEKO: Selecting Instrument"),
                 QUrl(QStringLiteral("qrc:/qml/FileProcessing.qml")), QSize(470, 350),
                 Sizing::Fixed)
    , m_store(store)
    , m_server(store)
{
    connectServer();
    connectRoot();
}

FileProcessing::~FileProcessing()
{
    // The worker reads the flag until its thread has ended.
    m_cancelState = 1;
    m_worker.stop();
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
    m_server.dropEarlierReplies();
    m_cancelState = 0;
    // While this waits the user may close the window, choose another file or start a run: what he
    // did last counts.
    const QPointer<FileProcessing> self(this);
    const quint64 turn = ++m_turn;
    const auto isOvertaken = [&] { return !self || m_turn != turn; };
    const bool isOnline = online(m_server.networkAccess(), m_store.endpoints().connectivity);
    if (isOvertaken())
        return false;
    if (!isOnline) {
        MessageBoxCustom::critical(
            tr("No Internet Connection"),
            tr("An active internet connection is required to use current application\n"
               "Please check your network settings and try again."));
        closeWindow();
        return false;
    }
    removeUploadedFile();
    if (isOvertaken())
        return false;
    m_sourcePath = path;
    resetView(path);
    show();
    raise();
    emit loaded();
    return !isOvertaken();
}

void FileProcessing::resetView(const QString &path)
{
    resetRun();
    m_isUploaded = false;
    m_savedId = 0;
    applyScale(usableGuiScale(m_store.guiScale()));
    setViewProperty("fileName", QFileInfo(path).fileName());
    setLayer("select_instrument");
    setViewProperty("selectedInstrument", offeredInstrument(m_store.defaultInstrument()));
    const bool isVideo = isVideoSource(mediaSuffix(path));
    const QString format = isVideo ? m_store.defaultVideoFormat() : m_store.defaultAudioFormat();
    setViewProperty("selectedOutputFormat", offeredFormat(format, isVideo));
    setViewProperty("isVideo", isVideo);
    setViewProperty("playerForVideo", m_store.defaultVideoPlayer());
    setViewProperty("playerForAudio", m_store.defaultAudioPlayer());
}

void FileProcessing::resetRun()
{
    m_cancelState = 0;
    m_results = {};
    m_downloadPercent[0] = m_downloadPercent[1] = 0;
}

void FileProcessing::checkRemains()
{
    qInfo() << "FileProcessing::checkRemains";
    const QPointer<FileProcessing> self(this);
    const bool isLimit = isDailyLimitReached(m_server.processedFilesRemains(m_store.user().hash));
    if (!self || !isVisible() || !isLimit
        || viewProperty("currentLayer") != QStringLiteral("select_instrument"))
        return;
    MessageBoxCustom::critical(
        tr("Files Limit"),
        tr("You have already processed 10 files, the maximum daily number you "
           "can process as a customer."));
    closeWindow();
}

void FileProcessing::startProcess()
{
    qInfo() << "FileProcessing::startProcess";
    ++m_turn;
    m_server.dropEarlierReplies();
    resetRun();
    for (const char *name : {"uploadingPercent", "downloading1Percent", "downloading2Percent",
                             "remainingProcessingTime"})
        setViewProperty(name, 0);
    emit resetProccesing();
    if (const QString problem =
            unusableFolder(m_store.defaultPathSave(), m_store.defaultPathTemp());
        !problem.isEmpty()) {
        refuse(tr("File Processing Error"), problem);
        return;
    }
    if (QFile::exists(m_tempWavPath))
        repeatUploaded();
    else
        prepareUpload();
}

void FileProcessing::prepareUpload()
{
    m_isUploaded = false;
    m_tempWavPath = temporaryWavPath(m_store.defaultPathTemp(), *QRandomGenerator64::global());
    removeUploadedFile();
    // What fails here is told by the missing file.
    if (!isFileOfThisMachine(m_sourcePath)) {
        doneUploadConverting();
        return;
    }
    if (mediaSuffix(m_sourcePath) == QStringLiteral("wav")) {
        QFile::copy(m_sourcePath, m_tempWavPath);
        // A copy of a read-only file is read-only too, and could not be removed on Windows.
        QFile::setPermissions(m_tempWavPath, QFile::permissions(m_tempWavPath) | QFile::WriteOwner);
        doneUploadConverting();
        return;
    }
    setLayer("converting");
    setViewProperty("convertingText", tr("Preparing a file for upload"));
    m_worker.start(std::make_unique<ConvertingFile>(&m_cancelState, m_sourcePath, m_tempWavPath,
                                                    QString(), true),
                   &ConvertingFile::prepareToUpload, &ConvertingFile::doneUploadConverting, this,
                   &FileProcessing::doneUploadConverting);
}

void FileProcessing::doneUploadConverting()
{
    if (isCancelled())
        return;
    qInfo() << "FileProcessing::doneUploadConverting";
    if (!QFile::exists(m_tempWavPath)) {
        refuse(tr("Converting Error"), tr("An error occurred preparing the file for upload"));
        return;
    }
    setLayer("uploading");
    m_server.uploadFile(instrument(), m_tempWavPath, QFileInfo(m_sourcePath).completeBaseName(),
                        m_store.user().hash, runModeOfUser(), m_sourcePath, extension());
    if (!m_server.errorText().isEmpty())
        showError(m_server.errorText());
}

void FileProcessing::repeatUploaded()
{
    if (isCancelled())
        return;
    setLayer("uploading");
    setViewProperty("uploadingPercent", 100);
    m_server.repeatFile(instrument(), QFileInfo(m_tempWavPath).fileName(),
                        QFileInfo(m_sourcePath).completeBaseName(), m_store.user().hash,
                        runModeOfUser(), m_sourcePath, extension());
}

void FileProcessing::runFromDemo(QString instrument, QString extension, int number)
{
    qInfo() << "FileProcessing::runFromDemo" << instrument << extension << number;
    resetRun();
    setViewProperty("selectedInstrument", instrument);
    setViewProperty("selectedOutputFormat", extension);
    setViewProperty("isVideo", isVideoSource(extension));
    setLayer("uploading");
    setViewProperty("uploadingPercent", 100);
    m_server.repeatDemoFile(m_store.user().hash, extension, number);
}

void FileProcessing::progressPercents(double percent)
{
    if (!isCancelled())
        setViewProperty("uploadingPercent", percent);
}

void FileProcessing::savedWithId(int id)
{
    m_isUploaded = true;
    if (isCancelled())
        return;
    qInfo() << "FileProcessing::savedWithId" << id;
    m_savedId = id;
    setLayer("processing");
    m_server.remains(m_savedId);
}

void FileProcessing::remainSeconds(int seconds)
{
    if (isCancelled())
        return;
    const bool isNews = viewProperty("remainingProcessingTime") != seconds;
    setViewProperty("remainingProcessingTime", seconds);
    // The view asks again only after an answer: one that repeats the last number counts as well.
    if (!isNews)
        QMetaObject::invokeMethod(view(), "remainingProcessingTimeChanged", Qt::DirectConnection);
}

void FileProcessing::getRemainsSeconds()
{
    // The view still asks while it waits to show the download.
    if (!isCancelled() && !areResultsReady())
        m_server.remains(m_savedId);
}

void FileProcessing::showError(QString message)
{
    qCritical() << "FileProcessing::showError" << message;
    m_server.dropEarlierReplies();
    discardDownloads();
    // A WAV file that never reached the service would only be asked for in vain at the next run.
    if (!m_isUploaded && QFile::exists(m_tempWavPath))
        QFile::remove(m_tempWavPath);
    MessageBoxCustom::critical(tr("File Processing Error"), message);
    setLayer("select_instrument");
}

void FileProcessing::cancelProcess()
{
    qInfo() << "FileProcessing::cancelProcess";
    m_cancelState = 1;
    m_worker.stop();
    m_server.cancel(m_savedId);
    discardDownloads();
    setLayer("select_instrument");
}

void FileProcessing::cancel()
{
    qInfo() << "FileProcessing::cancel";
    closeWindow();
}

void FileProcessing::windowClosed()
{
    ++m_turn;
    if (isBusy())
        cancelProcess();
    emit showParent();
}

void FileProcessing::proceedAnotherFile()
{
    qInfo() << "FileProcessing::proceedAnotherFile";
    setLayer("select_instrument");
    emit forceProcessAnotherFile();
}

void FileProcessing::proceedAnotherInstrument()
{
    qInfo() << "FileProcessing::proceedAnotherInstrument";
    setLayer("select_instrument");
}

void FileProcessing::removeUploadedFile()
{
    // A copy: while the service is asked this object may go or begin with another file.
    const QString path = m_tempWavPath;
    if (!QFile::exists(path))
        return;
    m_server.removeUploaded(QFileInfo(path).fileName());
    QFile::remove(path);
}

void FileProcessing::forgetUploadedFile()
{
    if (!QFile::exists(m_tempWavPath))
        return;
    m_server.removeUploadedSoon(QFileInfo(m_tempWavPath).fileName());
    QFile::remove(m_tempWavPath);
}

void FileProcessing::refuse(const QString &title, const QString &text)
{
    qCritical() << "FileProcessing" << text;
    setLayer("select_instrument");
    MessageBoxCustom::critical(title, text);
}

void FileProcessing::setLayer(const char *layer)
{
    setViewProperty("currentLayer", QString::fromLatin1(layer));
}

bool FileProcessing::isBusy() const
{
    return isBusyLayer(viewProperty("currentLayer").toString());
}

QString FileProcessing::instrument() const
{
    return viewProperty("selectedInstrument").toString();
}

QString FileProcessing::extension() const
{
    return viewProperty("selectedOutputFormat").toString().toLower();
}

QString FileProcessing::runModeOfUser() const
{
    return runMode(m_store.user());
}
