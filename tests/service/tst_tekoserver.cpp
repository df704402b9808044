// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/tekoserver.h"

#include "service/connectivity.h"
#include "tests/support/installation.h"
#include "tests/support/rows.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <functional>

using Answer = ScriptedAnswer;
using Ending = ScriptedAnswer::Ending;
using Operation = std::function<void(TekoServer &)>;

namespace {

const Operation askRemains = [](TekoServer &server) { server.remains(7); };
const Operation askRepeat = [](TekoServer &server) {
    server.repeatFile("vocals", "AB12.wav", "a+b & c=50%", "ha sh", "full", "/x/näh %20;.mp3",
                      "mp3");
};
const Operation askRepeatDemo = [](TekoServer &server) { server.repeatDemoFile("h", "wav", 9); };
const Operation askDownload = [](TekoServer &server) { server.download(5, "x", true); };

} // namespace

/// The client against a scripted server: what it sends and saves, and which signals come of it.
class TestTekoServer final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_home = std::make_unique<Installation>();
        m_home->store->setAccess({"key", "token"});
        m_client = std::make_unique<TekoServer>(*m_home->store);
        m_events.clear();
        const auto number = [this](const QString &name) {
            return [this, name](double value) { m_events += name + QString(" %1").arg(value); };
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

    void cleanup()
    {
        m_client.reset();
        m_home.reset();
    }

    void sendsForms_data()
    {
        const Rows<Operation, QByteArray, QByteArray> add;
        add("repeat", askRepeat, "repeat",
            "instrument=vocals&uploadedFileName=AB12.wav&fileName=a%2Bb%20%26%20c%3D50%25"
            "&version=full&hash=ha%20sh&extension=mp3&originalFilePath=/x/n%C3%A4h%20%2520;.mp3");
        add("repeat demo", askRepeatDemo, "repeatDemo", "hash=h&extension=wav&songId=9");
        add("remains", askRemains, "remains", "songID=7");
        add(
            "cancel", [](TekoServer &server) { server.cancel(0); }, "cancel", "songID=0");
        add(
            "remove", [](TekoServer &server) { server.removeUploaded("AB12.wav", &server); },
            "removeUploaded", "fileName=AB12.wav");
        add(
            "files left",
            [](TekoServer &server) { (void)server.processedFilesRemains("h", &server); },
            "processedFilesRemains", "hash=h");
        add("download", askDownload, "download", "songID=5");
    }

    void sendsForms()
    {
        const auto [operation, name, body] = fetchRow<Operation, QByteArray, QByteArray>();
        const QByteArray path = "/teko-server/" + name + ".php";
        // The session is the one of the moment, whatever the service would like to hear.
        server().on(path, {Answer::text("1", 200, {"Set-Cookie: teko-session=else; Path=/"})});
        operation(*m_client);
        QTRY_COMPARE(server().requests(path).size(), 1);
        m_home->signIn("h ;\r\nX: y");
        operation(*m_client);
        QTRY_COMPARE(server().requests(path).size(), 2);
        QCOMPARE(server().requests(path)[0].header("Cookie"), "");
        const ScriptedRequest request = server().requests(path)[1];
        QCOMPARE(request.header("Cookie"), "teko-session=h%20%3B%0D%0AX%3A%20y");
        QCOMPARE(request.method(), "POST");
        QCOMPARE(request.header("Content-Type"), "application/x-www-form-urlencoded");
        QCOMPARE(request.body, body);
    }

    void sendsUploads_data()
    {
        const Rows<QString, QString> add;
        add("not Latin, with marks", "näh %1 %20 🎵.wav", "näh %1 %20 🎵.wav");
#ifndef Q_OS_WIN
        add("hostile", "x\"; name=\"y\r\nSet: 1.wav", "x%22; name=%22y%0D%0ASet: 1.wav");
#endif
    }

    void sendsUploads()
    {
        const auto [name, nameOnWire] = fetchRow<QString, QString>();
        const QByteArray sound = QByteArray("RIFF\0\r\n--", 9).repeated(20000);
        upload(writeFile(m_home->path("in/" + name), sound));
        QTRY_COMPARE(m_events.last(), "id 7");
        QCOMPARE(m_events.first(), "upload 0");
        QVERIFY(m_events.contains("upload 100"));
        const ScriptedRequest request = server().requests().constFirst();
        const QByteArray type = request.header("Content-Type");
        QVERIFY(type.startsWith("multipart/form-data; boundary=\""));
        const QByteArray boundary = "--" + type.mid(type.indexOf('"') + 1).chopped(1);
        QByteArray expected = boundary
            + "\r\nContent-Disposition: form-data; name=\"uploadedFile\"; filename=\""
            + m_home->path("in/" + nameOnWire).toUtf8() + "\"\r\n\r\n" + sound;
        for (const auto &[field, value] :
             QList<std::pair<QByteArray, QByteArray>>{{"instrument", "vocals"},
                                                      {"version", "full"},
                                                      {"fileName", "söng"},
                                                      {"publicKey", "key"},
                                                      {"accessToken", "token"},
                                                      {"hash", "hash"},
                                                      {"extension", "mp3"},
                                                      {"originalFilePath", "/o/söng.mp3"}})
            expected += "\r\n" + boundary + "\r\nContent-Disposition: form-data; name=\"" + field
                + "\"\r\n\r\n" + value;
        QVERIFY(request.body == expected + "\r\n" + boundary + "--\r\n");
    }

    void understandsReplies_data()
    {
        const Rows<Operation, QByteArray, ScriptedAnswer, QString> add;
        const QString unfollowed = "The service answered with a redirect, which is not followed.";
        add("seconds", askRemains, "remains", Answer::text("8"), "seconds 8");
        add("no seconds", askRemains, "remains", Answer::text("0"), "seconds 0");
        add("ready", askRemains, "remains", Answer::text("-1"), "ready");
        add("empty", askRemains, "remains", Answer::text(""), "error ");
        add("remains cut", askRemains, "remains", Answer::wrongLength("8", "2"),
            "error Remains operation error:\n\nConnection closed");
        add("accepted", askRepeat, "repeat", Answer::text("123").inPieces(1), "id 123");
        add("repeat redirected", askRepeat, "repeat", Answer::redirect(QUrl("/x"), 307),
            "error File repeating error:\n\n" + unfollowed);
    }

    void understandsReplies()
    {
        const auto [operation, name, answer, event] =
            fetchRow<Operation, QByteArray, ScriptedAnswer, QString>();
        server().on("/teko-server/" + name + ".php", {answer});
        operation(*m_client);
        QTRY_VERIFY(!m_events.isEmpty());
        QCOMPARE(m_events, QStringList{event});
    }

    void sendsUploadsOnce_data()
    {
        const Rows<ScriptedAnswer, QString> add;
        const QString closed =
            "error File uploading error:\n\nThe connection was closed before the "
            "service answered.";
        Answer early = Answer::text("No <b>room</b>.");
        early.bodyLimit = 100'000;
        early.ending = Ending::Linger;
        add("closed instead of an answer", Answer::cut(), closed);
        add("refused early", early, "error No <b>room</b>.");
    }

    void sendsUploadsOnce()
    {
        const auto [answer, event] = fetchRow<ScriptedAnswer, QString>();
        server().on(Installation::proceed, {answer, Answer::text("1")});
        upload(writeFile(m_home->path("in/song.wav"), QByteArray(4'000'000, 'x')));
        QTRY_VERIFY(!m_events.last().startsWith("upload"));
        QCOMPARE(m_events.last(), event);
        QCOMPARE(server().requests().size(), 1);
    }

    void reportsBadUploads()
    {
        upload("/missing.wav");
        QCOMPARE(m_client->errorText(),
                 "Failed to open file: " + QDir::toNativeSeparators("/missing.wav"));
        QCOMPARE(m_events, QStringList());
        // The first bytes have left, and the rest is far more than the system's buffers hold.
        const QString file = writeFile(m_home->path("in/a.wav"), QByteArray(40'000'000, 'x'));
        connect(m_client.get(), &TekoServer::progressPercents, this, [file](double percent) {
            if (percent > 0)
                QFile::resize(file, 1000);
        });
        upload(file);
        QTRY_VERIFY(m_events.last().startsWith("error"));
        QCOMPARE(m_events.last(),
                 "error File uploading error:\n\nThe file became shorter while it was being read.");
        QCOMPARE(server().requests().size(), 0);
    }

    void keepsLittleOfAHugeReply()
    {
        server().on(Installation::remains, {Answer::text(QByteArray(50'000'000, 'x'))});
        m_client->remains(1);
        QTRY_COMPARE(m_events.size(), 1);
        QVERIFY(m_events[0].size() < 2000);
        QVERIFY(server().bytesSent() < 20'000'000);
    }

    void aborts_data()
    {
        addNames({"everything under way", "by its own end"});
    }

    /// Downloads, an upload in the middle and a question; nothing of them is left, or reported.
    void aborts()
    {
        QFETCH(QString, name);
        server().on("/a", {Answer::text(QByteArray(100'000, 'x')).inPieces(100)});
        server().on("/b", {Answer::never()});
        server().on(Installation::remains, {Answer::text("1").held()});
        m_client->downloadBoth(5, m_home->path("Save/1.wav"), m_home->path("Save/2.wav"), -1);
        m_client->remains(5);
        upload(writeFile(m_home->path("in/song.wav"), QByteArray(80'000'000, 'x')));
        QTRY_VERIFY(m_events.filter("upload").size() > 1 && m_events.filter("first").size() > 0);
        QTRY_COMPARE(server().requests(Installation::remains).size(), 1);
        const QStringList before = m_events;
        if (name == "by its own end")
            m_client.reset();
        else
            m_client->abort();
        server().release();
        // Whoever was to be heard has been heard once a later request is answered.
        TekoServer other(*m_home->store);
        QCOMPARE(other.processedFilesRemains("h", this), 5);
        QCOMPARE(m_events, before);
        QTRY_COMPARE(m_home->saved(), QStringList());
        QVERIFY(server().requests(Installation::proceed).isEmpty());
        QVERIFY(QFile::remove(m_home->path("in/song.wav")));
    }

    void cancelsUnwantedJobs_data()
    {
        const Rows<Operation, QByteArray, QByteArray, bool> add;
        const Operation upload = [this](TekoServer &) { this->upload(m_home->source("AB.wav")); };
        add("upload", upload, "proceed", "9", true);
        add("repeat", askRepeat, "repeat", "9", true);
        add("refusal", askRepeat, "repeat", "No.", false);
    }

    /// The service had the whole request when it was aborted, and takes or refuses it.
    void cancelsUnwantedJobs()
    {
        const auto [operation, name, answer, cancels] =
            fetchRow<Operation, QByteArray, QByteArray, bool>();
        const QByteArray path = "/teko-server/" + name + ".php";
        server().on(path, {Answer::text(answer).held()});
        operation(*m_client);
        QTRY_COMPARE(server().requests(path).size(), 1);
        m_events.clear();
        m_client->abort();
        server().release();
        QTRY_COMPARE(server().requests(Installation::cancel).size(), cancels ? 1 : 0);
        QCOMPARE(m_client->processedFilesRemains("h", this), 5);
        QCOMPARE(server().requests(Installation::cancel).value(0).field("songID"),
                 cancels ? "9" : "");
        QTRY_COMPARE(server().requests(Installation::removal).value(0).field("fileName"),
                     name == "proceed" ? "AB.wav" : "");
        QCOMPARE(m_events, QStringList());
    }

    void downloads_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        const QString failed = "error Download error:\n\n";
        const QString notWhole = failed + "The file did not arrive whole.";
        add("whole", "", Answer::text("sound"), "");
        add("to its end", "", Answer::raw("HTTP/1.1 200 OK\r\n\r\nsound"), "");
        add("moved", "", Answer::redirect(QUrl("/moved")), "");
        add("moved to a file", "", Answer::redirect(QUrl("file:///etc/passwd")), failed + '*');
        add("cut", "", Answer::wrongLength("half", "8"), failed + "Connection closed");
        add("broken chunk", "",
            Answer::raw(
                "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nab\r\n0\r\n\r\n"),
            notWhole);
        add("compressed", "", Answer::text("\x1f\x8b", 200, {"Content-Encoding: gzip"}),
            failed + "The file arrived in an encoding that was not asked for.");
        add("relative", "../a|../b", Answer::text("sound"), "");
        add("missing", "", Answer::text("gone", 404), failed + '*');
        for (const QByteArray urls : {"|/b", "file:///etc/passwd|/b", "http://me:secret@h/a|/b"})
            add(urls, urls, Answer::text("x"),
                failed + "The service returned no usable address for the file.");
    }

    void downloads()
    {
        const auto [urls, answer, error] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        m_home->signIn("hash");
        server().on("/a", {answer});
        server().on("/moved", {Answer::text("sound")});
        if (!urls.isEmpty())
            server().on(Installation::download, {Answer::text(urls)});
        writeFile(m_home->path("Save/1.wav"), "an earlier one");
        m_client->download(5, m_home->path("Save/1.wav"), false);
        QTRY_VERIFY(m_events.contains("first 100") || !m_events.filter("error").isEmpty());
        QVERIFY2(isLike(m_events.filter("error").join(""), error), qPrintable(m_events.join("")));
        QCOMPARE(m_home->saved(), error.isEmpty() ? QStringList("1.wav=sound") : QStringList());
        QVERIFY(m_events.filter("first").isEmpty() || !error.endsWith('*'));
        for (const ScriptedRequest &request : server().requests())
            QCOMPARE(request.header("Cookie").isEmpty(), request.method() == "GET");
    }

    void reportsFullDisk_data()
    {
        const Rows<int, int> add;
        // The last one fails only when its buffered bytes are flushed.
        add("a part fits", 3'000'000, 400'000);
        add("a little too much", 3'000, 2'048);
    }

    void reportsFullDisk()
    {
        const auto [size, room] = fetchRow<int, int>();
        const SmallDisk disk(m_home->path("disk"));
        if (!disk.isMounted())
            QSKIP("Mounting a small disk takes the rights of an administrator.");
        writeFile(m_home->path("disk/filler"), QByteArray(1'048'576 - room, 'x'));
        server().on("/a", {Answer::text(QByteArray(size, 'x'))});
        m_client->download(5, m_home->path("disk/1.wav"), false);
        QTRY_COMPARE(m_events.filter("error"),
                     QStringList{"error Download error:\n\nNo space left on device"});
        QCOMPARE(filesIn(m_home->path("disk")), QStringList{"filler"});
    }

    void endsWaiting_data()
    {
        addNames({"the context dies", "the client dies"});
    }

    /// A service that never answers keeps nobody; each wait is ended in the same ways.
    void endsWaiting()
    {
        QFETCH(QString, name);
        auto context = std::make_unique<QObject>();
        const QByteArray paths[] = {"/generate_204", Installation::filesLeft,
                                    Installation::removal};
        for (const QByteArray &path : paths)
            server().on(path, {Answer::never()});
        connect(&server(), &ScriptedServer::requestReceived, this, [&] {
            if (name == "the context dies")
                context = std::make_unique<QObject>();
            else
                m_client.reset();
        });
        for (const QByteArray &path : paths) {
            if (!m_client)
                m_client = std::make_unique<TekoServer>(*m_home->store);
            if (path == Installation::filesLeft)
                QCOMPARE(m_client->processedFilesRemains("h", context.get()), -1);
            else if (path == Installation::removal)
                m_client->removeUploaded("a.wav", context.get());
            else
                QVERIFY(!online(m_client->networkAccess(), server().url(path), context.get()));
            QCOMPARE(server().requests(path).size(), 1);
        }
    }

    void checksConnectivity()
    {
        for (const auto &[answer, isOnline] : {std::pair(Answer::text({}, 204), true),
                                               {Answer::text("login page"), true},
                                               {Answer::text("x", 500), false},
                                               {Answer::cut(), false}}) {
            server().on("/check", {answer});
            QCOMPARE(online(m_client->networkAccess(), server().url("/check"), this), isOnline);
        }
    }

private:
    ScriptedServer &server()
    {
        return m_home->server;
    }

    void upload(const QString &file)
    {
        m_client->uploadFile("vocals", file, "söng", "hash", "full", "/o/söng.mp3", "mp3");
    }

    std::unique_ptr<Installation> m_home;
    std::unique_ptr<TekoServer> m_client;
    QStringList m_events; ///< every signal of the client, in order
};

TEKO_TEST(TestTekoServer)
#include "tst_tekoserver.moc"
