// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sounds.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QHttpMultiPart>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTest>
#include <QUrlQuery>

using Form = QList<QPair<QString, QString>>;

inline const QByteArray unknownFile = "The service does not know this file.";
inline const QByteArray unknownSession =
    "The service does not know this sign-in. Please sign in again.";

/// The running program, embedded in this test.
class RunningService
{
public:
    explicit RunningService(const QString &folder, const QStringList &options = {})
    {
        m_process.start(program(), QStringList{"--embedded", "--data", folder} + options);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(20000)) { }
        const QJsonObject startLine = QJsonDocument::fromJson(m_process.readLine()).object();
        url = startLine["url"].toString();
        hash = startLine["hash"].toString();
    }
    ~RunningService()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(10000))
            crash();
    }

    static QString program() { return QCoreApplication::applicationDirPath() + "/teko-service"; }
    [[nodiscard]] bool endsCleanly()
    {
        m_process.closeWriteChannel();
        return m_process.waitForFinished(10000) && m_process.exitStatus() == QProcess::NormalExit
            && m_process.exitCode() == 0;
    }
    void crash()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    [[nodiscard]] QString processId() const { return QString::number(m_process.processId()); }
    [[nodiscard]] QByteArray log() { return m_log += m_process.readAllStandardError(); }

    QString url;
    QString hash; ///< of the local account's session

private:
    QProcess m_process;
    QByteArray m_log;
};

/// One client of the service, which states its session in the cookie.
class Client
{
public:
    Client(QString url, QString hash)
        : session(std::move(hash))
        , m_url(std::move(url))
    { }

    /// `url` may be relative to that of download.php.
    QByteArray get(const QString &url, int *status = nullptr)
    {
        const QUrl base(m_url + "/teko-server/");
        return finish(m_network.get(QNetworkRequest(base.resolved(QUrl(url)))), status);
    }
    QByteArray post(const QString &path, const Form &form, int *status = nullptr)
    {
        QUrlQuery query;
        query.setQueryItems(form);
        QNetworkRequest request = requestTo(path);
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
        return finish(m_network.post(request, query.toString(QUrl::FullyEncoded).toUtf8()), status);
    }
    QJsonObject json(const QString &path, const Form &form)
    {
        return QJsonDocument::fromJson(post(path, form)).object();
    }
    /// The file comes between the two groups of fields.
    QByteArray upload(const QByteArray &content, const Form &behind,
                      const QString &name = "/tmp/some where/x.wav", const Form &before = {})
    {
        QHttpMultiPart parts(QHttpMultiPart::FormDataType);
        const auto add = [&parts](const QString &disposition, const QByteArray &body) {
            QHttpPart part;
            part.setHeader(QNetworkRequest::ContentDispositionHeader, disposition);
            part.setBody(body);
            parts.append(part);
        };
        for (const auto &[key, value] : before)
            add(QStringLiteral("form-data; name=\"%1\"").arg(key), value.toUtf8());
        add(QStringLiteral("form-data; name=\"uploadedFile\"; filename=\"%1\"").arg(name), content);
        for (const auto &[key, value] : behind)
            add(QStringLiteral("form-data; name=\"%1\"").arg(key), value.toUtf8());
        return finish(m_network.post(requestTo("proceed.php"), &parts), nullptr);
    }
    /// Polls until the job has ended, and returns the last answer.
    QByteArray waitForEnd(const QByteArray &id)
    {
        QByteArray answer;
        const bool ended = QTest::qWaitFor(
            [&] {
                answer = post("remains.php", {{"songID", id}});
                bool isUnderWay = false;
                return answer.toInt(&isUnderWay) == -1 || !isUnderWay;
            },
            60000);
        return ended ? answer : "no end: " + answer;
    }

    QString session;

private:
    QNetworkRequest requestTo(const QString &path) const
    {
        QNetworkRequest request(QUrl(m_url + "/teko-server/" + path));
        if (!session.isEmpty())
            request.setRawHeader("Cookie", "a=b; teko-session=" + session.toUtf8());
        return request;
    }
    static QByteArray finish(QNetworkReply *reply, int *status)
    {
        if (!QTest::qWaitFor([reply] { return reply->isFinished(); }, 60000))
            reply->abort();
        reply->deleteLater();
        if (status)
            *status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        return reply->readAll();
    }

    QString m_url;
    QNetworkAccessManager m_network;
};

/// A test of the real program, with a data folder and a client of the local account.
class ServiceCase : public TestCase
{
protected:
    void startAfresh(const QStringList &options = {})
    {
        m_service.reset();
        m_dir = std::make_unique<QTemporaryDir>();
        restart(options);
    }
    void restart(const QStringList &options)
    {
        m_service.reset();
        m_service = std::make_unique<RunningService>(m_dir->filePath("data"), options);
        QVERIFY2(!m_service->url.isEmpty(), "the service did not start");
        m_client = std::make_unique<Client>(m_service->url, m_service->hash);
    }
    /// What a client sends with a file, some of it changed.
    [[nodiscard]] Form fields(const Form &changes = {}) const
    {
        Form form = {{"instrument", "vocals"}, {"version", "full"},
                     {"fileName", "My Söng"},  {"publicKey", "key"},
                     {"accessToken", ""},      {"hash", m_service->hash},
                     {"extension", "mp3"},     {"originalFilePath", "/home/a/My Söng.mp3"}};
        for (const auto &[key, value] : changes) {
            const auto field = std::find_if(form.begin(), form.end(),
                                            [&key = key](auto &f) { return f.first == key; });
            field->second = value;
        }
        return form;
    }
    /// A WAV file of 40 seconds, mono.
    static QByteArray song()
    {
        const QTemporaryDir dir;
        const localservice::WavShape shape{1, 8000, 16, 40 * 8000};
        const QString path = dir.filePath("song.wav");
        writeWav(path.toStdString(), shape,
                 soundOf(shape, [](qint64 frame, int) { return sine(700, frame, 8000); }));
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QStringList filesIn(const QString &sub) const
    {
        return QDir(m_dir->filePath("data/" + sub)).entryList(QDir::Files);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<RunningService> m_service;
    std::unique_ptr<Client> m_client;
    const QByteArray m_song = song();
};
