// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/tekoserver.h"

#include "base/programdata.h"
#include "service/connectivity.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>

#include <functional>
#include <memory>

using Operation = std::function<void(TekoServer &)>;

namespace {

using Answer = ScriptedAnswer;

const QByteArray proceed = "/teko-server/proceed.php";
const QByteArray repeat = "/teko-server/repeat.php";
const QByteArray repeatDemo = "/teko-server/repeatDemo.php";
const QByteArray remains = "/teko-server/remains.php";
const QByteArray cancel = "/teko-server/cancel.php";
const QByteArray download = "/teko-server/download.php";
const QByteArray removeUploaded = "/teko-server/removeUploaded.php";
const QByteArray filesLeft = "/teko-server/processedFilesRemains.php";

const Operation askRemains = [](TekoServer &server) { server.remains(7); };
const Operation askRepeat = [](TekoServer &server) {
    server.repeatFile("vocals", "AB12.wav", "a+b & c=50%", "ha sh", "full", "/x/näh %20;.mp3",
                      "mp3");
};
const Operation askRepeatDemo = [](TekoServer &server) { server.repeatDemoFile("h", "wav", 9); };
const Operation askCancel = [](TekoServer &server) { server.cancel(0); };
const Operation askRemove = [](TekoServer &server) { server.removeUploaded("AB12.wav"); };
const Operation askRemoveSoon = [](TekoServer &server) { server.removeUploadedSoon("AB12.wav"); };
const Operation askDownload = [](TekoServer &server) { server.download(5, "x", true); };
const Operation askDownloadBoth = [](TekoServer &server) { server.downloadBoth(6, "x", "y", 1); };
const Operation askFilesLeft = [](TekoServer &server) {
    Q_UNUSED(server.processedFilesRemains("h"))
};

} // namespace

/// The client against a scripted server: what goes over the wire, and which signals come of it.
class TestTekoServer final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<ScriptedServer>();
        m_store = std::make_unique<ProgramData>(path("teko.ini"));
        m_store->setEndpointSource([this] { return ServiceEndpoints{m_server->url(), {}, {}}; });
        m_store->setAccess({"key", "token"});
        m_client = std::make_unique<TekoServer>(*m_store);
        m_events.clear();
        const auto number = [this](const QString &name) {
            return [this, name](double value) {
                m_events += QStringLiteral("%1 %2").arg(name).arg(value);
            };
        };
        connect(m_client.get(), &TekoServer::progressPercents, this, number("upload"));
        connect(m_client.get(), &TekoServer::remainSeconds, this, number("seconds"));
        connect(m_client.get(), &TekoServer::savedWithId, this, number("id"));
        connect(m_client.get(), &TekoServer::downloadingFirst, this, number("first"));
        connect(m_client.get(), &TekoServer::downloadingSecond, this, number("second"));
        connect(m_client.get(), &TekoServer::filesReady, this, [this] { m_events += "ready"; });
        connect(m_client.get(), &TekoServer::showError, this,
                [this](const QString &text) { m_events += "error " + text; });
    }

    void cleanup() { m_client.reset(); }

    void sendsForms_data()
    {
        const Rows<Operation, QByteArray, QByteArray> add;
        add("repeat", askRepeat, repeat,
            "instrument=vocals&uploadedFileName=AB12.wav&fileName=a%2Bb%20%26%20c%3D50%25"
            "&version=full&hash=ha%20sh&extension=mp3&originalFilePath=/x/n%C3%A4h%20%2520;.mp3");
        add("repeat demo", askRepeatDemo, repeatDemo, "hash=h&extension=wav&songId=9");
        add("remains", askRemains, remains, "songID=7");
        add("cancel", askCancel, cancel, "songID=0");
        add("remove", askRemove, removeUploaded, "fileName=AB12.wav");
        add("remove soon", askRemoveSoon, removeUploaded, "fileName=AB12.wav");
        add("files left", askFilesLeft, filesLeft, "hash=h");
        add("download", askDownload, download, "songID=5");
        add("download both", askDownloadBoth, download, "songID=6");
    }

    void sendsForms()
    {
        const auto [operation, path, body] = fetchRow<Operation, QByteArray, QByteArray>();
        m_server->on(path, {Answer::text("1", 200, {"Set-Cookie: teko-session=else; Path=/"})});
        operation(*m_client);
        QTRY_COMPARE(m_server->requests().size(), 1);
        QCOMPARE(m_server->requests().constFirst().header("Cookie"), "");
        // The session is the one of the moment, whatever the service would like to hear.
        signInAs("h ;\r\nX: y");
        operation(*m_client);
        QTRY_COMPARE(m_server->requests().size(), 2);
        const ScriptedRequest request = m_server->requests().constLast();
        QCOMPARE(request.header("Cookie"), "teko-session=h%20%3B%0D%0AX%3A%20y");
        QVERIFY(request.head.startsWith("POST " + path + " HTTP/1.1\r\n"));
        QCOMPARE(request.header("Content-Type"), "application/x-www-form-urlencoded");
        QCOMPARE(request.body, body);
    }

    void sendsUpload_data()
    {
        const Rows<QString, QString> add;
        add("plain", "a b.wav", "a b.wav");
        add("not Latin, with marks", "näh %1 %20 🎵.wav", "näh %1 %20 🎵.wav");
#ifndef Q_OS_WIN
        add("hostile", "x\"; name=\"y\r\nSet: 1.wav", "x%22; name=%22y%0D%0ASet: 1.wav");
#endif
    }

    void sendsUpload()
    {
        const auto [name, nameOnWire] = fetchRow<QString, QString>();
        const QByteArray sound = QByteArray("RIFF\0\r\n--", 9).repeated(20000);
        m_server->on(proceed, {Answer::text("12")});
        signInAs("hash");
        upload(makeFile(name, sound));
        QTRY_COMPARE(m_events.last(), "id 12");
        QCOMPARE(m_events.first(), "upload 0");
        QVERIFY(m_events.contains("upload 100"));

        const ScriptedRequest request = m_server->requests().constFirst();
        QCOMPARE(request.header("User-Agent"), "Mozilla/5.0"); // that of all other requests
        QCOMPARE(request.header("Cookie"), "teko-session=hash");
        const QByteArray type = request.header("Content-Type");
        QVERIFY(type.startsWith("multipart/form-data; boundary=\""));
        const QByteArray boundary = "--" + type.mid(type.indexOf('"') + 1).chopped(1);
        QByteArray expected = boundary
            + "\r\nContent-Disposition: form-data; name=\"uploadedFile\"; filename=\""
            + path(nameOnWire).toUtf8() + "\"\r\n\r\n" + sound;
        const QList<std::pair<QByteArray, QByteArray>> fields = {
            {"instrument", "vocals"}, {"version", "full"},
            {"fileName", "söng"},     {"publicKey", "key"},
            {"accessToken", "token"}, {"hash", "hash"},
            {"extension", "mp3"},     {"originalFilePath", "/o/söng.mp3"}};
        for (const auto &[field, value] : fields)
            expected += "\r\n" + boundary + "\r\nContent-Disposition: form-data; name=\"" + field
                + "\"\r\n\r\n" + value;
        QVERIFY(request.body == expected + "\r\n" + boundary + "--\r\n");
    }

    void understandsReplies_data()
    {
        const Rows<Operation, QByteArray, ScriptedAnswer, QString> add;
        const QString unfollowed = "The service answered with a redirect, which is not followed.";
        add("seconds", askRemains, remains, Answer::text("8"), "seconds 8");
        add("below ready", askRemains, remains, Answer::text("-2"), "seconds -2");
        add("no seconds", askRemains, remains, Answer::text("0"), "seconds 0");
        add("zeros", askRemains, remains, Answer::text("00"), "error 00");
        add("ready", askRemains, remains, Answer::text("-1"), "ready");
        add("empty", askRemains, remains, Answer::text(""), "error ");
        add("markup", askRemains, remains, Answer::text("<b>no</b> job"), "error <b>no</b> job");
        add("remains cut", askRemains, remains, Answer::wrongLength("8", "2"),
            "error Remains operation error:\n\nConnection closed");
        add("remains redirected", askRemains, remains, Answer::redirect(QUrl("/x")),
            "error Remains operation error:\n\n" + unfollowed);
        add("no status", askRemains, remains,
            Answer::raw("HTTP/1.1 000 X\r\nContent-Length: 1\r\n\r\n8"),
            "error Remains operation error:\n\nThe service answered with the unexpected HTTP "
            "status 0.");
        add("accepted", askRepeat, repeat, Answer::text("123"), "id 123");
        add("accepted in pieces", askRepeat, repeat, Answer::text("123").inPieces(1), "id 123");
        add("job zero", askRepeat, repeat, Answer::text("0"), "error 0");
        add("refused", askRepeat, repeat, Answer::text("Unknown file"), "error Unknown file");
        add("repeat cut", askRepeat, repeat, Answer::wrongLength("1", "2"),
            "error File repeating error:\n\nConnection closed");
        add("repeat redirected", askRepeat, repeat, Answer::redirect(QUrl("/x"), 307),
            "error File repeating error:\n\n" + unfollowed);
        add("demo accepted", askRepeatDemo, repeatDemo, Answer::text("4"), "id 4");
        add("demo cut", askRepeatDemo, repeatDemo, Answer::wrongLength("1", "2"),
            "error Demo File repeating error:\n\nConnection closed");
        add("one part", askDownload, download, Answer::text("http://x/1"), "error http://x/1");
        add("three parts", askDownload, download, Answer::text("a|b|c"), "error a|b|c");
        add("urls cut", askDownload, download, Answer::wrongLength("a|b", "9"),
            "error Downloading error:\n\nConnection closed");
    }

    void understandsReplies()
    {
        const auto [operation, path, answer, event] =
            fetchRow<Operation, QByteArray, ScriptedAnswer, QString>();
        m_server->on(path, {answer});
        operation(*m_client);
        QTRY_VERIFY(!m_events.isEmpty());
        QCOMPARE(m_events, QStringList{event});
        QCOMPARE(m_server->requests().size(), 1);
    }

    void countsFilesLeft()
    {
        for (const auto &[answer, left] : {std::pair(Answer::text("10"), 10),
                                           {Answer::text("0"), 0},
                                           {Answer::text("sign in first"), -1},
                                           {Answer::text("3", 500), -1},
                                           {Answer::wrongLength("3", "4"), -1}}) {
            m_server->on(filesLeft, {answer});
            QCOMPARE(m_client->processedFilesRemains("h"), left);
        }
    }

    void reportsUnreadableUpload()
    {
        upload(path("missing.wav"));
        QCOMPARE(m_client->errorText(), "Failed to open file: " + path("missing.wav"));
        QCOMPARE(m_events, QStringList());
        m_server->on(proceed, {Answer::text("1")});
        upload(makeFile("there.wav", "x"));
        QCOMPARE(m_client->errorText(), "");
        QTRY_COMPARE(m_events.last(), "id 1");
        QCOMPARE(m_server->requests().size(), 1);
    }

    void reportsShrinkingUpload()
    {
        const QString file = makeFile("song.wav", QByteArray(40'000'000, 'x'));
        m_server->on(proceed, {Answer::text("1")});
        // The first bytes have left, and the rest is far more than the system's buffers hold.
        connect(m_client.get(), &TekoServer::progressPercents, this, [file](double percent) {
            if (percent > 0)
                QFile::resize(file, 1000);
        });
        upload(file);
        QTRY_VERIFY(m_events.last().startsWith("error"));
        QCOMPARE(m_events.last(),
                 "error File uploading error:\n\nThe file became shorter while it was being read.");
        QCOMPARE(m_events.filter("error").size(), 1);
        QCOMPARE(m_server->requests().size(), 0);
    }

    void sendsUploadOnce_data()
    {
        const Rows<ScriptedAnswer, QString> add;
        const QString failed = "error File uploading error:\n\n";
        const QString closed = failed + "The connection was closed before the service answered.";
        const auto early = [](Answer answer) {
            answer.bodyLimit = 100'000;
            answer.ending = Answer::Ending::Linger;
            return answer;
        };
        using Ending = Answer::Ending;
        add("closed in the middle", Answer::cut(Ending::Close, 100'000), closed);
        add("reset instead of an answer", Answer::cut(Ending::Reset), closed);
        add("half an answer", Answer::wrongLength("1", "2"), failed + "Connection closed");
        add("refused early", early(Answer::text("No <b>room</b>.")), "error No <b>room</b>.");
        add("too large, told early", early(Answer::text("", 413)),
            failed + "Error transferring " + proceed + " - server replied: Refused");
    }

    void sendsUploadOnce()
    {
        const auto [answer, event] = fetchRow<ScriptedAnswer, QString>();
        m_server->on(proceed, {answer, Answer::text("1")});
        upload(makeFile("song.wav", QByteArray(10'000'000, 'x')));
        QTRY_VERIFY(!m_events.last().startsWith("upload"));
        QCOMPARE(m_events.last().remove(m_server->url().toString()), event);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void keepsLittleOfHugeReply()
    {
        m_server->on(remains, {Answer::text(QByteArray(50'000'000, 'x'))});
        m_client->remains(1);
        QTRY_VERIFY(!m_events.isEmpty());
        QCOMPARE(m_events.size(), 1);
        QVERIFY(m_events[0].startsWith("error xxx"));
        QVERIFY(m_events[0].size() < 2000);
        QVERIFY(m_server->bytesSent() < 20'000'000);
    }

    void leavesOpenRequests_data()
    {
        addNames({"dies", "goes on with another run"});
    }

    void leavesOpenRequests()
    {
        QFETCH(QString, name);
        const bool dies = name == "dies";
        m_server->on(download,
                     {Answer::text(m_server->url("/1").toEncoded() + '|'
                                   + m_server->url("/2").toEncoded())});
        m_server->on("/1", {Answer::text(QByteArray(100'000, 'x')).inPieces(100)});
        m_server->on("/2", {Answer::never()});
        m_server->on(remains, {Answer::text("1").held(), Answer::text("2")});
        m_server->on(proceed, {Answer::never()});
        m_client->downloadBoth(5, path("1.wav"), path("2.wav"), -1);
        m_client->remains(5);
        upload(makeFile("song.wav", QByteArray(20'000'000, 'x')));
        QTRY_COMPARE(m_server->requests().size(), 5);
        QStringList expected = m_events;
        if (dies) {
            m_client.reset();
        } else {
            m_client->dropEarlierReplies();
            m_client->remains(5);
            expected << "seconds 2";
        }
        m_server->release();
        QTRY_VERIFY(QDir(m_folder->path()).entryList({"?.wav*"}, QDir::Files).isEmpty());
        QTRY_COMPARE(m_events, expected);
    }

    void diesWhileWaiting()
    {
        m_server->on(filesLeft, {Answer::never()});
        connect(m_server.get(), &ScriptedServer::requestReceived, this,
                [this] { m_client.reset(); });
        QCOMPARE(m_client->processedFilesRemains("h"), -1);
        QVERIFY(!m_client);
    }

    void diesWhenTold_data()
    {
        addNames({"refused", "broken"});
    }

    void diesWhenTold()
    {
        QFETCH(QString, name);
        m_server->on(proceed, {name == "refused" ? Answer::text("no") : Answer::cut()});
        connect(m_client.get(), &TekoServer::showError, this, [this] { m_client.reset(); });
        upload(makeFile("song.wav", "x"));
        QTRY_VERIFY(!m_client);
    }

    void checksConnectivity()
    {
        QVERIFY(!online(m_client->networkAccess(), QUrl()));
        for (const auto &[answer, isOnline] :
             {std::pair(Answer::raw("HTTP/1.1 204 No Content\r\n\r\n"), true),
              {Answer::text("login page"), true},
              {Answer::text("x", 500), false},
              {Answer::cut(), false}}) {
            m_server->on("/check", {answer});
            QCOMPARE(online(m_client->networkAccess(), m_server->url("/check")), isOnline);
        }
    }

    void endsConnectivityCheck_data()
    {
        addNames({"the manager dies", "the program quits"});
    }

    void endsConnectivityCheck()
    {
        QFETCH(QString, name);
        const bool quits = name == "the program quits";
        m_server->on("/check", {Answer::never()});
        connect(m_server.get(), &ScriptedServer::requestReceived, this, [this, quits] {
            if (quits)
                QCoreApplication::exit();
            else
                m_client.reset();
        });
        QVERIFY(!online(m_client->networkAccess(), m_server->url("/check")));
    }

private:
    [[nodiscard]] QString path(const QString &name) const
    {
        return m_folder->filePath(name);
    }

    void signInAs(const QString &hash)
    {
        UserRecord user;
        user.hash = hash;
        m_store->setUser(user);
    }

    QString makeFile(const QString &name, const QByteArray &content) const
    {
        return writeFile(path(name), content);
    }

    void upload(const QString &file)
    {
        m_client->uploadFile("vocals", file, "söng", "hash", "full", "/o/söng.mp3", "mp3");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<TekoServer> m_client;
    QStringList m_events; ///< every signal of the client, in order
};

TEKO_TEST_MAIN(TestTekoServer)
#include "tst_tekoserver.moc"
