// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/tekoserver.h"

#include "base/programdata.h"
#include "service/filefetch.h"
#include "service/frozenfile.h"
#include "service/replies.h"
#include "service/textreply.h"
#include "service/uploadform.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QHttpMultiPart>
#include <QNetworkReply>

/// One result to download.
struct TekoServer::FetchTarget
{
    QString path;
    qint64 expectedSize;
    bool isSecondUrl;
    Progress progress;
};

/// Texts for the failure of one kind of job request.
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
        qInfo().noquote() << "Removing File Result: " << truncatedForDisplay(answer.body);
    else
        qInfo().noquote() << "Error: " << truncatedForDisplay(answer.error);
}

} // namespace

TekoServer::TekoServer(ProgramData &store)
    : m_store(store)
    , m_network(new QNetworkAccessManager(this))
    , m_requests(std::make_unique<QObject>())
{ }

void TekoServer::uploadFile(const QString &instrument, const QString &filePath,
                            const QString &fileName, const QString &hash, const QString &version,
                            const QString &originalFilePath, const QString &extension)
{
    qInfo() << "TekoServer::uploadFile";
    m_errorText.clear();
    auto file = std::make_unique<FrozenFile>(filePath);
    if (!file->open(QIODevice::ReadOnly)) {
        m_errorText = tr("Failed to open file: %1").arg(QDir::toNativeSeparators(filePath));
        qInfo().noquote() << m_errorText;
        return;
    }
    emit progressPercents(0);
    const AccessCredentials &access = m_store.access();
    m_source = file.get();
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
    const QUrl url = m_store.endpoints().operation(QStringLiteral("proceed.php"));
    QNetworkReply *reply =
        m_network->post(withSession(plainRequest(url), m_store.user().hash), form.get());
    form.release()->setParent(reply);
    connect(reply, &QNetworkReply::uploadProgress, m_requests.get(),
            [this](qint64 sent, qint64 total) { reportUpload(sent, total); });
    expectJob(reply, uploadTexts);
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
    collectText(post("remains.php", songField(songId)), m_requests.get(),
                [this](const TextAnswer &answer) { remainsAnswered(answer); });
}

void TekoServer::cancel(int songId)
{
    qInfo() << "TekoServer::cancel";
    ignoreSslErrorsOfCurrent();
    QNetworkReply *reply = post("cancel.php", songField(songId));
    keepOpen(reply);
    collectText(reply, this, [](const TextAnswer &answer) {
        if (answer.error.isEmpty())
            qInfo() << "Successfully canceled!";
        else
            qInfo().noquote() << "Canceling error:" << truncatedForDisplay(answer.error);
        qInfo().noquote() << truncatedForDisplay(answer.body);
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

void TekoServer::abort()
{
    m_requests = std::make_unique<QObject>();
    // A completely sent request continues: the service may have accepted it.
    if (!m_source || m_source->atEnd())
        return;
    if (m_currentReply)
        m_currentReply->abort();
    m_source->release();
}

void TekoServer::requestRemoval(const QString &fileName)
{
    qInfo() << "TekoServer::requestRemoval";
    QNetworkReply *reply = post("removeUploaded.php", nameField(fileName));
    keepOpen(reply);
    collectText(reply, this, logRemoval);
}

void TekoServer::removeUploaded(const QString &fileName, const QObject *context)
{
    qInfo() << "TekoServer::removeUploaded";
    QNetworkReply *reply = post("removeUploaded.php", nameField(fileName));
    collectText(reply, this, logRemoval);
    waitForFinished(reply, context);
}

void TekoServer::waitForLastAnswers(const QObject *context, std::chrono::milliseconds timeout)
{
    qInfo() << "TekoServer::waitForLastAnswers";
    const QDeadlineTimer deadline(timeout);
    const QPointer<const QObject> waiting(context);
    // An answer may lead to further requests.
    while (waiting && !m_lastAnswers.isEmpty() && !deadline.hasExpired()) {
        const QPointer<QNetworkReply> reply = m_lastAnswers.takeFirst();
        if (reply && reply->isRunning())
            waitForFinished(reply, context, std::chrono::milliseconds(deadline.remainingTime()));
    }
}

int TekoServer::processedFilesRemains(const QString &hash, const QObject *context)
{
    qInfo() << "TekoServer::processedFilesRemains";
    const TextAnswer answer =
        waitForText(post("processedFilesRemains.php", {{QStringLiteral("hash"), hash}}), context);
    if (!answer.error.isEmpty())
        qInfo().noquote() << "Error: " << truncatedForDisplay(answer.error);
    return answer.error.isEmpty() ? filesLeft(answer.body) : -1;
}

QNetworkReply *TekoServer::post(const char *path, const FormFields &fields)
{
    const QUrl url = m_store.endpoints().operation(QLatin1String(path));
    return m_network->post(withSession(formRequest(url), m_store.user().hash), formBody(fields));
}

void TekoServer::keepOpen(QNetworkReply *reply)
{
    m_lastAnswers.removeIf([](const QPointer<QNetworkReply> &each) { return !each; });
    m_lastAnswers << reply;
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

void TekoServer::expectJob(QNetworkReply *reply, const JobTexts &texts)
{
    m_currentReply = reply;
    keepOpen(reply);
    // Handled even after abort(): an accepted job must be cancelled.
    collectText(reply, this,
                [this, reply, &texts, isActive = QPointer<QObject>(m_requests.get()),
                 source = &texts == &uploadTexts ? m_source : nullptr](TextAnswer answer) {
                    if (m_currentReply == reply)
                        m_currentReply.clear();
                    if (source && source->hasFailed())
                        answer.error = source->errorString();
                    if (isActive)
                        jobAnswered(texts, answer);
                    else
                        jobAnsweredAfterAbort(texts, answer,
                                              source ? source->fileName() : QString());
                });
}

void TekoServer::failed(const char *label, const TextAnswer &answer)
{
    qInfo().noquote() << label << truncatedForDisplay(answer.error);
    qInfo().noquote() << truncatedForDisplay(answer.body);
    emit showError(tr(label) + QLatin1String("\n\n") + truncatedForDisplay(answer.error));
}

void TekoServer::jobAnswered(const JobTexts &texts, const TextAnswer &answer)
{
    m_isJobRefused = answer.status != 0;
    if (!answer.error.isEmpty()) {
        failed(texts.error, answer);
        return;
    }
    if (const int id = ::songId(answer.body)) {
        emit savedWithId(id);
        return;
    }
    qInfo().noquote() << texts.refusal << truncatedForDisplay(answer.body);
    emit showError(truncatedForDisplay(answer.body));
}

void TekoServer::jobAnsweredAfterAbort(const JobTexts &texts, const TextAnswer &answer,
                                       const QString &uploadedFile)
{
    const int id = answer.error.isEmpty() ? ::songId(answer.body) : 0;
    if (id == 0) {
        qInfo().noquote() << texts.refusal << truncatedForDisplay(answer.error + answer.body);
        return;
    }
    cancel(id);
    if (!uploadedFile.isEmpty())
        requestRemoval(QFileInfo(uploadedFile).fileName());
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
        emit showError(truncatedForDisplay(answer.body));
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
    collectText(m_currentReply, m_requests.get(),
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
        emit showError(truncatedForDisplay(answer.body));
        return;
    }
    for (const FetchTarget &target : targets) {
        auto *fetch = new FileFetch(target.path, target.expectedSize, this);
        connect(fetch, &FileFetch::progress, this, target.progress);
        connect(fetch, &FileFetch::failed, this, &TekoServer::showError);
        connect(m_requests.get(), &QObject::destroyed, fetch, &FileFetch::abort);
        const QUrl asked = m_store.endpoints().operation(QStringLiteral("download.php"));
        fetch->start(resultUrl(asked, target.isSecondUrl ? urls->second : urls->first));
    }
}
