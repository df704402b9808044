// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "sounds.h"
#include "tests/support/testmain.h"

#include <QHttpMultiPart>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrlQuery>
#include <QtTest>

using namespace localservice;
using Form = QList<QPair<QString, QString>>;

namespace {

// The running program, embedded in this test.
class RunningService
{
public:
    explicit RunningService(const QString &folder, const QStringList &options = {})
    {
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start(QCoreApplication::applicationDirPath() + "/teko-service",
                        QStringList{"--embedded", "--data", folder} + options);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(20000)) { }
        const QJsonObject greeting = QJsonDocument::fromJson(m_process.readLine()).object();
        url = greeting["url"].toString();
        hash = greeting["hash"].toString();
    }
    ~RunningService()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(10000))
            m_process.kill();
        m_process.waitForFinished();
    }

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
    [[nodiscard]] QByteArray log() { return m_log += m_process.readAllStandardError(); }

    QString url;
    QString hash;

private:
    QProcess m_process;
    QByteArray m_log;
};

// One client of the service, with the cookies of its own.
class Client
{
public:
    explicit Client(QString url)
        : m_url(std::move(url))
    { }

    QByteArray get(const QString &url, int *status = nullptr, QNetworkReply *reply = nullptr)
    {
        return finish(reply ? reply : m_network.get(QNetworkRequest(QUrl(url))), status);
    }
    QByteArray post(const QString &path, const Form &form, int *status = nullptr)
    {
        QUrlQuery query;
        query.setQueryItems(form);
        QNetworkRequest request(QUrl(m_url + "/teko-server/" + path));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
        return finish(m_network.post(request, query.toString(QUrl::FullyEncoded).toUtf8()), status);
    }
    QByteArray upload(const QByteArray &content, const Form &fields,
                      const QString &name = "/tmp/some where/x.wav")
    {
        QHttpMultiPart parts(QHttpMultiPart::FormDataType);
        const auto add = [&parts](const QString &disposition, const QByteArray &body) {
            QHttpPart part;
            part.setHeader(QNetworkRequest::ContentDispositionHeader, disposition);
            part.setBody(body);
            parts.append(part);
        };
        if (!content.isNull())
            add(QStringLiteral("form-data; name=\"uploadedFile\"; filename=\"%1\"").arg(name),
                content);
        for (const auto &[key, value] : fields)
            add(QStringLiteral("form-data; name=\"%1\"").arg(key), value.toUtf8());
        const QNetworkRequest request(QUrl(m_url + "/teko-server/proceed.php"));
        return finish(m_network.post(request, &parts), nullptr);
    }
    /// Asks until the job is no longer under way, and gives the last answer.
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

private:
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

} // namespace

class ServiceProgramTest final : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void processesAFile();
    void refusesInASentence_data();
    void refusesInASentence();
    void refusesUnknownNumbersAndNames_data();
    void refusesUnknownNumbersAndNames();
    void demoCanBeMadeWhole();
    void cancelsAndGoesOnAfterACrash();
    void cutUploadLeavesNothing();
    void answersPagesAndForeignRequests_data();
    void answersPagesAndForeignRequests();
    void accountsAreKeptApart();
    void limitsSignInTries();
    void appliesTheLicence_data();
    void appliesTheLicence();
    void runsAnotherSeparator_data();
    void runsAnotherSeparator();
    void explainsUsageErrors();

private:
    [[nodiscard]] Form fields(const Form &changes = {}) const;
    void startAfresh(const QStringList &options = {});
    void restart(const QStringList &options);
    [[nodiscard]] QStringList filesIn(const QString &sub) const
    {
        return QDir(m_dir->filePath("data/" + sub)).entryList(QDir::Files);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<RunningService> m_service;
    std::unique_ptr<Client> m_client;
    QByteArray m_song; // 40 seconds, mono
};

void ServiceProgramTest::initTestCase()
{
    const QTemporaryDir dir;
    const WavShape shape{1, 8000, 16, 40 * 8000};
    const QString path = dir.filePath("song.wav");
    writeWav(path.toStdString(), shape,
             soundOf(shape, [](qint64 frame, int) { return sine(700, frame, 8000); }));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_song = file.readAll();
    startAfresh();
}

void ServiceProgramTest::cleanupTestCase()
{
    m_client.reset();
    m_service.reset();
}

void ServiceProgramTest::startAfresh(const QStringList &options)
{
    m_service.reset();
    m_dir = std::make_unique<QTemporaryDir>();
    restart(options);
}

void ServiceProgramTest::restart(const QStringList &options)
{
    m_service.reset();
    m_service = std::make_unique<RunningService>(m_dir->filePath("data"), options);
    QVERIFY2(!m_service->url.isEmpty(), "the service did not start");
    m_client = std::make_unique<Client>(m_service->url);
}

// What a client sends with a file, some of it changed.
Form ServiceProgramTest::fields(const Form &changes) const
{
    Form form = {{"instrument", "vocals"}, {"version", "full"},
                 {"fileName", "My Söng"},  {"publicKey", "key"},
                 {"accessToken", ""},      {"hash", m_service->hash},
                 {"extension", "mp3"},     {"originalFilePath", "/home/a/My Söng.mp3"}};
    for (auto &[key, value] : form) {
        for (const auto &[changedKey, changedValue] : changes) {
            if (key == changedKey)
                value = changedValue;
        }
    }
    return form;
}

void ServiceProgramTest::processesAFile()
{
    startAfresh();
    const QByteArray id = m_client->upload(m_song, fields());
    QVERIFY2(id.toInt() > 0, id);
    QCOMPARE(m_client->waitForEnd(id), "-1");
    const QList<QByteArray> urls = m_client->post("download.php", {{"songID", id}}).split('|');
    QCOMPARE(urls.size(), 2);
    const QByteArray main = m_client->get(urls[0]);
    const QByteArray mix = m_client->get(urls[1]);
    QCOMPARE(main.size(), m_song.size());
    QCOMPARE(mix.size(), m_song.size());
    for (int at = 44; at < 4000; at += 2) {
        const auto sample = [at](const QByteArray &wav) {
            return qFromLittleEndian<qint16>(wav.constData() + at);
        };
        QCOMPARE(sample(main) + sample(mix), int(sample(m_song)));
    }
    QVERIFY(urls[0].endsWith("/vocals.wav") && urls[1].endsWith("/mix-without-vocals.wav"));
    int status = 0;
    QVERIFY(!m_client->get(urls[0] + "x", &status).startsWith("RIFF"));
    QCOMPARE(status, 404);

    // A further instrument of the same file, without sending it again.
    const Form repeat = fields({{"instrument", "drums"}}) + Form{{"uploadedFileName", "x.wav"}};
    const QByteArray again = m_client->post("repeat.php", repeat);
    QVERIFY2(again.toInt() > 0 && again != id, again);
    QCOMPARE(m_client->waitForEnd(again), "-1");
    const QJsonArray archive =
        QJsonDocument::fromJson(m_client->post("auth/archive.php", {{"hash", m_service->hash}}))
            .array();
    QCOMPARE(archive.size(), 2);
    const QJsonObject record = archive[1].toObject();
    QCOMPARE(record["name"].toString(), "My Söng");
    QCOMPARE(record["local_file_path"].toString(), "/home/a/My Söng.mp3");
    QCOMPARE(record["instrument"].toString() + record["extension"].toString(), "vocalsmp3");
    QCOMPARE(record["demoFile"].toString(), "no");
    QCOMPARE(record["ai_id"].toInt(), id.toInt());
    QCOMPARE(record["deleted"].toString(),
             QDateTime::currentDateTimeUtc().addDays(30).date().toString(Qt::ISODate));

    // A late cancel takes nothing away; a removed upload cannot be repeated.
    QCOMPARE(m_client->post("cancel.php", {{"songID", id}}), "There was nothing left to cancel.");
    QCOMPARE(m_client->post("remains.php", {{"songID", id}}), "-1");
    QCOMPARE(m_client->post("removeUploaded.php", {{"fileName", "x.wav"}}), "Removed.");
    QCOMPARE(filesIn("uploads"), QStringList());
    QVERIFY(m_client->post("repeat.php", repeat).contains("no longer has this file"));
}

void ServiceProgramTest::refusesInASentence_data()
{
    QTest::addColumn<Form>("changes");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("text");
    const QByteArray wav; // the song
    QTest::newRow("no WAV") << Form() << QByteArray("ID3 sound") << QByteArray("not a WAV file");
    QTest::newRow("empty") << Form() << QByteArray("") << QByteArray("not a WAV file");
    QTest::newRow("instrument") << Form{{"instrument", "Vocals"}} << wav
                                << QByteArray("instrument");
    QTest::newRow("format") << Form{{"extension", "exe"}} << wav << QByteArray("output format");
    QTest::newRow("run") << Form{{"version", ""}} << wav << QByteArray("kind of run");
    QTest::newRow("session") << Form{{"hash", "0123"}} << wav << QByteArray("sign in again");
    QTest::newRow("token") << Form{{"accessToken", "x"}} << wav << QByteArray("sign in again");
    QTest::newRow("no name") << Form{{"fileName", ""}} << wav << QByteArray("name of the file");
    QTest::newRow("too large") << Form() << m_song + QByteArray(1 << 20, 0)
                               << QByteArray("too large");
}

void ServiceProgramTest::refusesInASentence()
{
    QFETCH(Form, changes);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, text);
    startAfresh({"--max-upload-mb", "1"});
    const QByteArray answer =
        m_client->upload(content.isNull() ? m_song : content, fields(changes));
    QVERIFY2(answer.contains(text), answer);
    QVERIFY(answer.endsWith('.') && answer.toInt() == 0);
    QCOMPARE(filesIn("uploads"), QStringList());
}

void ServiceProgramTest::refusesUnknownNumbersAndNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Form>("form");
    for (const char *path : {"remains.php", "cancel.php", "download.php"}) {
        for (const char *id : {"0", "17", "-1", "x", "99999999999999999999", ""})
            QTest::addRow("%s %s", path, id) << path << Form{{"songID", id}};
    }
    QTest::newRow("demo") << "repeatDemo.php" << Form{{"songId", "17"}, {"hash", "HASH"}};
    QTest::newRow("repeat") << "repeat.php" << Form{{"uploadedFileName", "../service.db"}};
}

void ServiceProgramTest::refusesUnknownNumbersAndNames()
{
    QFETCH(QString, path);
    QFETCH(Form, form);
    for (auto &[key, value] : form)
        value.replace("HASH", m_service->hash);
    if (path == "repeat.php")
        form = fields() + form;
    int status = 0;
    const QByteArray answer = m_client->post(path, form, &status);
    QVERIFY2(answer.endsWith('.') && answer.contains(' '), answer);
    QCOMPARE(status, 200);
}

void ServiceProgramTest::demoCanBeMadeWhole()
{
    startAfresh();
    const QByteArray demo = m_client->upload(m_song, fields({{"version", "demo"}}));
    QCOMPARE(m_client->waitForEnd(demo), "-1");
    const QByteArray url = m_client->post("download.php", {{"songID", demo}}).split('|')[0];
    QCOMPARE(m_client->get(url).size(), 44 + 2 * 30 * 8000);
    m_client->post("removeUploaded.php", {{"fileName", "x.wav"}});
    const Form form = {{"hash", m_service->hash}, {"extension", "flac"}, {"songId", demo}};
    const QByteArray whole = m_client->post("repeatDemo.php", form);
    QVERIFY2(whole.toInt() > 0 && whole != demo, whole);
    QCOMPARE(m_client->waitForEnd(whole), "-1");
    const QByteArray wholeUrl = m_client->post("download.php", {{"songID", whole}}).split('|')[0];
    QCOMPARE(m_client->get(wholeUrl).size(), m_song.size());
    const Form notADemo = {{"hash", m_service->hash}, {"extension", "flac"}, {"songId", whole}};
    QVERIFY(m_client->post("repeatDemo.php", notADemo).contains("not a demo"));
}

void ServiceProgramTest::cancelsAndGoesOnAfterACrash()
{
#ifdef Q_OS_UNIX
    startAfresh({"--workers", "1", "--separator", "sleep 1000"});
    const QByteArray first = m_client->upload(m_song, fields());
    const QByteArray second = m_client->upload(m_song, fields(), "/b/second.wav");
    QCOMPARE(m_client->upload(m_song, fields()), first); // the same request once more
    QVERIFY(m_client->post("remains.php", {{"songID", second}}).toInt() > 0);
    QVERIFY(m_client->post("download.php", {{"songID", first}}).contains("not ready"));
    QCOMPARE(m_client->post("cancel.php", {{"songID", first}}), "Cancelled.");
    QVERIFY(m_client->waitForEnd(first).contains("cancelled"));
    m_service->crash();
    restart({"--workers", "1"});
    QCOMPARE(m_client->waitForEnd(second), "-1");
    QVERIFY(m_client->post("remains.php", {{"songID", first}}).contains("cancelled"));
    QVERIFY(m_service->endsCleanly());
#else
    QSKIP("There is no program here that just waits.");
#endif
}

void ServiceProgramTest::cutUploadLeavesNothing()
{
    startAfresh();
    QTcpSocket socket;
    const QUrl url(m_service->url);
    socket.connectToHost(url.host(), quint16(url.port()));
    QVERIFY(socket.waitForConnected());
    socket.write(
        "POST /teko-server/proceed.php HTTP/1.1\r\nHost: x\r\nContent-Length: 900000\r\n"
        "Content-Type: multipart/form-data; boundary=B\r\n\r\n--B\r\n"
        "Content-Disposition: form-data; name=\"uploadedFile\"; filename=\"x.wav\"\r\n\r\n");
    socket.write(m_song.left(300000));
    QTRY_COMPARE(filesIn("uploads").size(), 1);
    const Form repeat = fields() + Form{{"uploadedFileName", "x.wav"}};
    QVERIFY(m_client->post("repeat.php", repeat).contains("still being uploaded"));
    socket.abort();
    QTRY_COMPARE(filesIn("uploads"), QStringList());
    QVERIFY(m_client->post("repeat.php", repeat).contains("no longer has this file"));
}

void ServiceProgramTest::answersPagesAndForeignRequests_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *line, const char *answer) {
        QTest::newRow(line) << QByteArray(line) + " HTTP/1.1\r\nHost: x\r\n" << QByteArray(answer);
    };
    row("GET /generate_204", "HTTP/1.1 204 ");
    row("GET /helpdesk.html", "HTTP/1.1 200 ");
    row("GET /subscription.html", "HTTP/1.1 200 ");
    row("HEAD /helpdesk.html", "HTTP/1.1 200 ");
    row("GET /teko-server/redirect-training-videos.php", "HTTP/1.1 200 ");
    row("GET /teko-server/redirect-user-guide.php?a=b", "HTTP/1.1 200 ");
    row("GET /nothing", "HTTP/1.1 404 ");
    row("GET /results/", "HTTP/1.1 404 ");
    row("GET /results/../service.db", "HTTP/1.1 404 ");
    row("GET /results/%2e%2e/%2e%2e/service.db", "HTTP/1.1 404 ");
    row("GET /teko-server/remains.php", "HTTP/1.1 404 ");
    row("PUT /teko-server/remains.php", "HTTP/1.1 405 ");
    row("DELETE /nothing", "HTTP/1.1 404 ");
    QTest::newRow("an endless header") << "GET / HTTP/1.1\r\nX: " + QByteArray(50000, 'y') + "\r\n"
                                       << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("too many headers") << "GET / HTTP/1.1\r\n" + QByteArray("X: y\r\n").repeated(500)
                                      << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("too large a form")
        << "POST /teko-server/remains.php HTTP/1.1\r\nContent-Length: 70000\r\n\r\n"
            + QByteArray(70000, 'a')
        << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("no multipart") << QByteArray(
        "POST /teko-server/proceed.php HTTP/1.1\r\nContent-Length: 0\r\n")
                                  << QByteArray("HTTP/1.1 400 ");
}

void ServiceProgramTest::answersPagesAndForeignRequests()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QTcpSocket socket;
    const QUrl url(m_service->url);
    socket.connectToHost(url.host(), quint16(url.port()));
    socket.write(request + "\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(socket.bytesAvailable() >= answer.size(), 10000);
    QCOMPARE(socket.read(answer.size()), answer);
}

void ServiceProgramTest::accountsAreKeptApart()
{
    startAfresh();
    const QByteArray mine = m_client->upload(m_song, fields());
    QCOMPARE(m_client->waitForEnd(mine), "-1");
    Client other(m_service->url);
    const Form person = {{"name", "Otto"}, {"email", "otto@example.org"}, {"password", "12345678"}};
    const QJsonObject otto =
        QJsonDocument::fromJson(other.post("auth/register.php", person)).object();
    const QString hash = otto["hash"].toString();
    QCOMPARE(otto["subscription"].toObject()["expired"].toInt(-1), 0);
    QCOMPARE(other.post("auth/archive.php", {{"hash", hash}}), "[]");
    // He is known by now, also in requests that do not name him.
    for (const char *path : {"remains.php", "cancel.php", "download.php"})
        QVERIFY(other.post(path, {{"songID", mine}}).contains("does not know this file"));
    const Form demo = {{"hash", hash}, {"extension", "mp3"}, {"songId", mine}};
    QVERIFY(other.post("repeatDemo.php", demo).contains("does not know this file"));
    const Form repeat = fields({{"hash", hash}}) + Form{{"uploadedFileName", "x.wav"}};
    QVERIFY(other.post("repeat.php", repeat).contains("no longer has this file"));
    other.post("removeUploaded.php", {{"fileName", "x.wav"}});
    QCOMPARE(filesIn("uploads").size(), 1);

    const QJsonObject again =
        QJsonDocument::fromJson(other.post("auth/login.php", person)).object();
    QVERIFY(again["hash"].toString() != hash && again["user_id"] == otto["user_id"]);
    const Form change = {{"hash", hash},
                         {"accessToken", otto["access_token"].toString()},
                         {"name", "O"},
                         {"email", "o@example.org"},
                         {"password", ""}};
    QVERIFY(other.post("auth/update.php", change).contains("\"o@example.org\""));
    for (const auto &[size, reason] : {std::pair(7, "at least 8"), std::pair(1025, "too long")}) {
        Form bad = change;
        bad.last().second = QString(size, 'x');
        QVERIFY2(other.post("auth/update.php", bad).contains(reason), reason);
    }
    QVERIFY(other.post("auth/check.php", {{"hash", hash}}).contains("\"O\""));

    QCOMPARE(other.post("auth/recover.php", {{"email", "o@example.org"}}), "1");
    QCOMPARE(other.post("auth/recover.php", {{"email", "nobody@example.org"}}), "1");
    static const QRegularExpression pattern("code for o@example.org is (\\w+)");
    QTRY_VERIFY(pattern.match(m_service->log()).hasMatch());
    const QString code = pattern.match(m_service->log()).captured(1);
    const Form recovery = {{"email", "o@example.org"}, {"code", code}, {"password", "abcdefgh"}};
    QCOMPARE(other.post("auth/recover.php", recovery), "1");
    QVERIFY(other.post("auth/recover.php", recovery).contains("no longer valid"));
    QVERIFY(other.post("auth/check.php", {{"hash", hash}}).contains("sign in again"));
}

void ServiceProgramTest::limitsSignInTries()
{
    startAfresh();
    const auto tryPassword = [this](const QString &email) {
        return m_client->post("auth/login.php", {{"email", email}, {"password", "wrong"}});
    };
    const QByteArray wrong = tryPassword("local@localhost");
    QVERIFY(wrong.contains("is wrong"));
    QCOMPARE(tryPassword("nobody@localhost"), wrong);
    for (int i = 1; i < 10; ++i)
        QCOMPARE(tryPassword("Local@localhost"), wrong);
    QVERIFY(tryPassword("local@localhost").contains("Too many tries"));
    QCOMPARE(tryPassword("nobody@localhost"), wrong);
}

void ServiceProgramTest::appliesTheLicence_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("version");
    QTest::addColumn<int>("expired"); // -1: no subscription
    QTest::addColumn<QByteArray>("second"); // the answer to a second file; empty: accepted
    QTest::newRow("active") << QStringList() << "full" << 0 << QByteArray();
    QTest::newRow("none") << QStringList{"--subscription", "none"} << "full" << -1
                          << QByteArray("active subscription");
    QTest::newRow("expired") << QStringList{"--subscription", "expired"} << "full" << 1
                             << QByteArray("active subscription");
    QTest::newRow("expired, demo")
        << QStringList{"--subscription", "expired"} << "demo" << 1 << QByteArray();
    QTest::newRow("limit") << QStringList{"--daily-limit", "1"} << "full" << 0
                           << QByteArray("already processed 1 files");
}

void ServiceProgramTest::appliesTheLicence()
{
    QFETCH(QStringList, options);
    QFETCH(QString, version);
    QFETCH(int, expired);
    QFETCH(QByteArray, second);
    startAfresh(options);
    const Form me = {{"hash", m_service->hash}};
    const QJsonObject user = QJsonDocument::fromJson(m_client->post("auth/check.php", me)).object();
    QCOMPARE(user["subscription"].isNull(), expired < 0);
    QCOMPARE(user["subscription"].toObject()["expired"].toInt(-1), expired);
    const bool isLimited = options.contains("--daily-limit");
    QCOMPARE(m_client->post("processedFilesRemains.php", me), isLimited ? "1" : "1000000");
    m_client->upload(m_song, fields({{"version", version}}), "one.wav");
    QCOMPARE(m_client->post("processedFilesRemains.php", me), isLimited ? "0" : "1000000");
    const QByteArray answer = m_client->upload(m_song, fields({{"version", version}}), "two.wav");
    QVERIFY2(second.isEmpty() ? answer.toInt() > 0 : answer.contains(second), answer);
}

void ServiceProgramTest::runsAnotherSeparator_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("does its work")
        << "sh -c 'cp \"$1\" \"$2\" && cp \"$1\" \"$3\"' x {input} {main} {mix}"
        << QByteArray("-1");
    QTest::newRow("fails") << "sh -c 'exit 3'" << QByteArray("The separator program failed.");
    QTest::newRow("does nothing") << "true"
                                  << QByteArray("The separator program gave no usable result.");
    QTest::newRow("gives half") << "cp {input} {main}"
                                << QByteArray("The separator program gave no usable result.");
    QTest::newRow("is missing") << "/no/such/program {input}"
                                << QByteArray("The separator program could not be started.");
}

void ServiceProgramTest::runsAnotherSeparator()
{
#ifdef Q_OS_UNIX
    QFETCH(QString, command);
    startAfresh({"--separator", command});
    const QByteArray id = m_client->upload(m_song, fields({{"version", "demo"}}));
    QTEST(m_client->waitForEnd(id), "end");
#else
    QSKIP("The commands are a Unix shell's.");
#endif
}

void ServiceProgramTest::explainsUsageErrors()
{
    QProcess program;
    const auto run = [&program](const QStringList &arguments) {
        program.start(QCoreApplication::applicationDirPath() + "/teko-service", arguments);
        program.waitForFinished();
        return program.exitCode();
    };
    QCOMPARE(run({"--help"}), 0);
    const QByteArray help = program.readAllStandardOutput();
    for (const char *option : {"--listen", "--data", "--embedded", "--separator", "--workers",
                               "--daily-limit", "--subscription", "--keep-days", "--max-upload-mb"})
        QVERIFY2(help.contains(option), option);
    QCOMPARE(run({"--listen", "nowhere"}), 2);
    QVERIFY(program.readAllStandardError().contains("ADDRESS:PORT"));
    QCOMPARE(run({"--listen", m_service->url.mid(7), "--data", m_dir->filePath("other")}), 1);
}

TEKO_TEST_MAIN(ServiceProgramTest)
#include "tst_serviceprogram.moc"
