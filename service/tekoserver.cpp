// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/tekoserver.h"

#include "app/base/programdata.h"
#include "service/filefetch.h"
#include "service/frozenfile.h"
#include "service/replies.h"
#include "service/textreply.h"
#include "service/uploadaccess.h"
#include "service/uploadform.h"

#include <QDebug>
#include <QFile>
#include <QHttpMultiPart>
#include <QNetworkReply>

/// Where one result goes.
struct TekoServer::FetchTarget
{
    QString path;
    qint64 expectedSize;
    bool isSecondUrl;
    Progress progress;
};

/// What one kind of job request says when it fails.
struct TekoServer::JobTexts
{
    const char *error; ///< log label, and before two line breaks the beginning of the message
    const char *refusal; ///< log label
};

const TekoServer::JobTexts TekoServer::uploadTexts = {QT_TR_NOOP("File uploading error:"),
                                                      "File Not uploaded. Error. Server response:"};
const TekoServer::JobTexts TekoServer::repeatTexts = {QT_TR_NOOP("File repeating error:"),
                                                      "File Not repeated. Error. Server response:"};
const TekoServer::JobTexts TekoServer::demoTexts = {
    QT_TR_NOOP("Demo File repeating error:"), "Demo File Not repeated. Error. Server response:"};

namespace {

FormFields songField(int songId)
{
    return {{QStringLiteral("songID"), QString::number(songId)}};
}

FormFields nameField(const QString &fileName)
{
    return {{QStringLiteral("fileName"), fileName}};
}

void logRemoval(const TextAnswer &answer)
{
    if (answer.error.isEmpty())
        qInfo().noquote() << "Removing File Result: " << shownText(answer.body);
    else
        qInfo().noquote() << "Error: " << shownText(answer.error);
}

} // namespace

TekoServer::TekoServer(ProgramData &store)
    : m_store(store)
    , m_network(new UploadAccess(this))
    , m_run(std::make_unique<QObject>())
    , m_downloads(std::make_unique<QObject>())
{ }

void TekoServer::uploadFile(const QString &instrument, const QString &filePath,
                            const QString &fileName, const QString &hash, const QString &version,
                            const QString &originalFilePath, const QString &extension)
{
    qInfo() << "TekoServer::uploadFile";
    m_errorText.clear();
    auto file = std::make_unique<FrozenFile>(filePath);
    if (!file->open(QIODevice::ReadOnly)) {
        m_errorText = tr("Failed to open file: %1").arg(filePath);
        qInfo().noquote() << m_errorText;
        return;
    }
    emit progressPercents(0);
    const AccessCredentials &access = m_store.access();
    FrozenFile *const source = file.get();
    auto form = uploadForm(std::move(file),
                           {{QStringLiteral("instrument"), instrument},
                            {QStringLiteral("version"), version},
                            {QStringLiteral("fileName"), fileName},
                            {QStringLiteral("publicKey"), access.publicKey},
                            {QStringLiteral("accessToken"), access.accessToken},
                            {QStringLiteral("hash"), hash},
                            {QStringLiteral("extension"), extension},
                            {QStringLiteral("originalFilePath"), originalFilePath}});
    ignoreSslErrorsOfCurrent();
    QNetworkReply *reply = m_network->post(
        withSession(plainRequest(url("proceed.php")), m_store.user().hash), form.get());
    form.release()->setParent(reply);
    connect(reply, &QNetworkReply::uploadProgress, m_run.get(),
            [this](qint64 sent, qint64 total) { reportUpload(sent, total); });
    expectJob(reply, uploadTexts, source);
}

void TekoServer::repeatFile(const QString &instrument, const QString &uploadedFileName,
                            const QString &fileName, const QString &hash, const QString &version,
                            const QString &originalFilePath, const QString &extension)
{
    qInfo() << "TekoServer::repeatFile";
    ignoreSslErrorsOfCurrent();
    QNetworkReply *reply = post("repeat.php",
                                {{QStringLiteral("instrument"), instrument},
                                 {QStringLiteral("uploadedFileName"), uploadedFileName},
                                 {QStringLiteral("fileName"), fileName},
                                 {QStringLiteral("version"), version},
                                 {QStringLiteral("hash"), hash},
                                 {QStringLiteral("extension"), extension},
                                 {QStringLiteral("originalFilePath"), originalFilePath}});
    expectJob(reply, repeatTexts);
}

void TekoServer::repeatDemoFile(const QString &hash, const QString &extension, int songId)
{
    qInfo() << "TekoServer::repeatDemoFile";
    ignoreSslErrorsOfCurrent();
    QNetworkReply *reply = post("repeatDemo.php",
                                {{QStringLiteral("hash"), hash},
                                 {QStringLiteral("extension"), extension},
                                 {QStringLiteral("songId"), QString::number(songId)}});
    expectJob(reply, demoTexts);
}

void TekoServer::remains(int songId)
{
    qInfo() << "TekoServer::remains";
    collectText(post("remains.php", songField(songId)), m_run.get(),
                [this](const TextAnswer &answer) { remainsAnswered(answer); });
}

void TekoServer::cancel(int songId)
{
    qInfo() << "TekoServer::cancel";
    ignoreSslErrorsOfCurrent();
    collectText(post("cancel.php", songField(songId)), this, [](const TextAnswer &answer) {
        if (answer.error.isEmpty())
            qInfo() << "Successfully canceled!";
        else
            qInfo().noquote() << "Canceling error:" << shownText(answer.error);
        qInfo().noquote() << shownText(answer.body);
    });
}

void TekoServer::download(int songId, const QString &path, bool second)
{
    qInfo() << "TekoServer::download";
    askForResults(songId, {{path, -1, second, &TekoServer::downloadingFirst}});
}

void TekoServer::downloadBoth(int songId, const QString &firstPath, const QString &secondPath,
                              qint64 expectedSize)
{
    qInfo() << "TekoServer::downloadBoth";
    askForResults(songId,
                  {{firstPath, expectedSize, false, &TekoServer::downloadingFirst},
                   {secondPath, expectedSize, true, &TekoServer::downloadingSecond}});
}

void TekoServer::dropEarlierReplies()
{
    m_run = std::make_unique<QObject>();
    abortDownloads();
}

void TekoServer::abortDownloads()
{
    m_downloads = std::make_unique<QObject>();
    const auto fetches = findChildren<FileFetch *>();
    for (FileFetch *fetch : fetches)
        fetch->giveUp();
}

void TekoServer::removeUploadedSoon(const QString &fileName)
{
    qInfo() << "TekoServer::removeUploadedSoon";
    collectText(post("removeUploaded.php", nameField(fileName)), this, logRemoval);
}

void TekoServer::removeUploaded(const QString &fileName)
{
    qInfo() << "TekoServer::removeUploaded";
    logRemoval(waitForText(post("removeUploaded.php", nameField(fileName))));
}

int TekoServer::processedFilesRemains(const QString &hash)
{
    qInfo() << "TekoServer::processedFilesRemains";
    const TextAnswer answer =
        waitForText(post("processedFilesRemains.php", {{QStringLiteral("hash"), hash}}));
    if (!answer.error.isEmpty())
        qInfo().noquote() << "Error: " << shownText(answer.error);
    return answer.error.isEmpty() ? filesLeft(answer.body) : -1;
}

QUrl TekoServer::url(const char *path) const
{
    QUrl url = m_store.endpoints().base;
    url.setPath(url.path() + QLatin1String("/teko-server/") + QLatin1String(path));
    return url;
}

QNetworkReply *TekoServer::post(const char *path, const FormFields &fields)
{
    return m_network->post(withSession(formRequest(url(path)), m_store.user().hash),
                           formBody(fields));
}

void TekoServer::ignoreSslErrorsOfCurrent()
{
    if (m_currentReply)
        m_currentReply->ignoreSslErrors();
}

void TekoServer::reportUpload(qint64 sent, qint64 total)
{
    if (const auto percent = uploadPercent(sent, total))
        emit progressPercents(*percent);
}

void TekoServer::expectJob(QNetworkReply *reply, const JobTexts &texts, const FrozenFile *source)
{
    m_currentReply = reply;
    collectText(reply, m_run.get(), [this, reply, &texts, source](TextAnswer answer) {
        if (m_currentReply == reply)
            m_currentReply.clear();
        if (source && source->hasFailed())
            answer.error = source->errorString();
        jobAnswered(texts, answer);
    });
}

void TekoServer::failed(const char *label, const TextAnswer &answer)
{
    qInfo().noquote() << label << shownText(answer.error);
    qInfo().noquote() << shownText(answer.body);
    emit showError(tr(label) + QLatin1String("\n\n") + shownText(answer.error));
}

void TekoServer::jobAnswered(const JobTexts &texts, const TextAnswer &answer)
{
    if (!answer.error.isEmpty()) {
        failed(texts.error, answer);
        return;
    }
    if (const int id = ::songId(answer.body)) {
        emit savedWithId(id);
        return;
    }
    qInfo().noquote() << texts.refusal << shownText(answer.body);
    emit showError(shownText(answer.body));
}

void TekoServer::remainsAnswered(const TextAnswer &answer)
{
    if (!answer.error.isEmpty()) {
        failed(QT_TR_NOOP("Remains operation error:"), answer);
        return;
    }
    const Remains remains = remainsReply(answer.body);
    switch (remains.kind) {
    case Remains::Kind::Ready:
        emit filesReady();
        break;
    case Remains::Kind::Seconds:
        emit remainSeconds(remains.seconds);
        break;
    case Remains::Kind::Refusal:
        emit showError(shownText(answer.body));
        break;
    }
}

void TekoServer::askForResults(int songId, const QList<FetchTarget> &targets)
{
    for (const FetchTarget &target : targets) {
        if (QFile::exists(target.path))
            QFile::remove(target.path);
    }
    ignoreSslErrorsOfCurrent();
    m_currentReply = post("download.php", songField(songId));
    collectText(m_currentReply, m_downloads.get(),
                [this, targets](const TextAnswer &answer) { fetchResults(answer, targets); });
}

void TekoServer::fetchResults(const TextAnswer &answer, const QList<FetchTarget> &targets)
{
    if (!answer.error.isEmpty()) {
        failed(QT_TR_NOOP("Downloading error:"), answer);
        return;
    }
    const auto urls = resultUrls(answer.body);
    if (!urls) {
        emit showError(shownText(answer.body));
        return;
    }
    for (const FetchTarget &target : targets) {
        auto *fetch = new FileFetch(target.path, target.expectedSize, this);
        connect(fetch, &FileFetch::progress, this, target.progress);
        connect(fetch, &FileFetch::failed, this, &TekoServer::showError);
        // They may be relative.
        fetch->start(
            url("download.php").resolved(QUrl(target.isSecondUrl ? urls->second : urls->first)));
    }
}
