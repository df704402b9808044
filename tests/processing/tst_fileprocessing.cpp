// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/fileprocessing.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedservice.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <memory>
#include <optional>

using Answer = ScriptedAnswer;

/// The processing window with its real view, the scripted service and the fake ffmpeg.
class TestFileProcessing : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("FAKE_DO");
        m_service = std::make_unique<ScriptedService>();
        set("default_instrument", "Vocals");
        set("default_audio_format", "WAV");
        UserRecord user;
        user.hash = "h";
        m_service->store.setUser(user);
        m_window = std::make_unique<FileProcessing>(m_service->store);
    }

    void cleanup() { m_window.reset(); }

    /// Any but an answer of 0 files lets the user in.
    void opening()
    {
        server().on(m_filesLeft, {Answer::text("0", 500)});
        set("settings_gui_scale", 1.5);
        set("default_video_format", "MKV");
        m_window->openWindow(source("Clip <b>.MOV"));
        QCOMPARE(m_window->minimumSize(), QSize(705, 525));
        QCOMPARE(m_window->maximumSize(), QSize(705, 525));
        const auto state = [this] {
            return QVariantList{value("fileName"),
                                value("currentLayer"),
                                value("selectedInstrument"),
                                value("selectedOutputFormat"),
                                value("isVideo"),
                                value("scf")};
        };
        QCOMPARE(state(),
                 QVariantList({"Clip <b>.MOV", "select_instrument", "vocals", "MKV", true, 1.5}));
        m_service->store.settings().remove("settings_gui_scale");
        m_window->openWindow(source("a.b.flac"));
        QCOMPARE(state(),
                 QVariantList({"a.b.flac", "select_instrument", "vocals", "WAV", false, 1.0}));
        QVERIFY(m_window->isVisible());
    }

    void refusedOpenings_data()
    {
        const Rows<QByteArray, QString> add;
        add("unreachable", "/generate_204",
            "No Internet Connection: An active internet connection is required to use current "
            "application\nPlease check your network settings and try again.");
        add("daily limit", m_filesLeft,
            "Files Limit: You have already processed 10 files, the maximum daily number you can "
            "process as a customer.");
    }

    /// The main window comes back, each time.
    void refusedOpenings()
    {
        const auto [path, message] = fetchRow<QByteArray, QString>();
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        server().on(path, {Answer::text("0", path == m_filesLeft ? 200 : 500)});
        for (int time = 1; time <= 2; ++time) {
            m_window->openWindow(source("a.wav"));
            QCOMPARE(messages.take(), QStringList(message));
            QCOMPARE(back.size(), time);
            QVERIFY(!m_window->isVisible());
        }
    }

    /// A whole run with a repeated answer, another instrument for the same file, another file.
    void threeRuns()
    {
        RecordedMessages messages;
        server().on(m_service->remains, {Answer::text("1"), Answer::text("1"), Answer::text("-1")});
        QVERIFY(QFile::setPermissions(source("Song %20 ü.WAV"), QFile::ReadOwner));
        m_window->openWindow(m_service->path("in/Song %20 ü.WAV"));
        m_window->startProcess();
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(paths(), "proceed.php remains.php remains.php remains.php download.php");
        QCOMPARE(asked(m_service->remains).field("songID"), "7");
        QCOMPARE(m_service->saved(),
                 QStringList({"Mix Without vocals - Song %20 ü.wav=the rest",
                              "vocals - Song %20 ü.wav=instrument"}));
        QVERIFY(value("isDemo").toBool());
        const QStringList temporary = filesIn(m_service->path("Temp"));
        QCOMPARE(temporary.size(), 1);
        // Windows removes nothing that is read-only.
        QVERIFY(QFile::permissions(m_service->path("Temp/" + temporary.constFirst()))
                & QFile::WriteOwner);

        server().clearRequests();
        m_window->proceedAnotherInstrument();
        QCOMPARE(layer(), "select_instrument");
        m_window->rootObject()->setProperty("selectedInstrument", "bass");
        m_window->startProcess();
        QCOMPARE(layer(), "uploading");
        QCOMPARE(value("uploadingPercent").toDouble(), 100.0);
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(paths(), "repeat.php remains.php download.php");
        QCOMPARE(asked(m_service->repeat).body,
                 "instrument=bass&uploadedFileName=" + temporary.constFirst().toLatin1()
                     + "&fileName=Song%20%2520%20%C3%BC&version=demo&hash=h&extension=wav"
                       "&originalFilePath="
                     + QUrl::toPercentEncoding(m_service->path("in/Song %20 ü.WAV"), "/"));
        QCOMPARE(m_service->saved().size(), 4);

        server().clearRequests();
        QSignalSpy another(m_window.get(), &FileProcessing::openAnotherFile);
        m_window->proceedAnotherFile();
        QCOMPARE(another.size(), 1);
        m_window->openWindow(source("b.wav"));
        QCOMPARE(asked(m_service->removal).field("fileName"), temporary.constFirst());
        QCOMPARE(filesIn(m_service->path("Temp")), QStringList());
        QCOMPARE(messages.texts(), QStringList());
    }

    void failures_data()
    {
        const Rows<QByteArray, QByteArray, QString, bool> add;
        add("refused upload", "proceed", "<b>Not</b> a song", "<b>Not</b> a song", false);
        add("failed job", "remains", "Too quiet", "Too quiet", true);
        add("no locations", "download", "gone", "gone", true);
        add("one result missing", "download", "SERVER/a|SERVER/nothing", "Download error:\n\n*",
            true);
    }

    void failures()
    {
        const auto [path, answer, message, keepsUpload] =
            fetchRow<QByteArray, QByteArray, QString, bool>();
        RecordedMessages messages;
        server().on("/teko-server/" + path + ".php",
                    {Answer::text(QByteArray(answer).replace("SERVER", m_service->address("")))});
        start("a.wav");
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts().constFirst(), "File Processing Error: " + message),
                 qPrintable(messages.texts().constFirst()));
        QTRY_COMPARE(layer(), "select_instrument");
        QCOMPARE(m_service->saved(), QStringList());
        QCOMPARE(filesIn(m_service->path("Temp")).size(), keepsUpload ? 1 : 0);
    }

    void cancelling_data()
    {
        const Rows<QByteArray, QString, QString, bool> add;
        add("uploading", m_service->proceed, "uploading", "0", false);
        add("processing", m_service->remains, "processing", "7", false);
        add("downloading", "/b", "downloading", "7", false);
        add("the window is closed", m_service->remains, "processing", "7", true);
    }

    void cancelling()
    {
        const auto [heldPath, stage, id, closes] = fetchRow<QByteArray, QString, QString, bool>();
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        const QByteArray late = stage == "uploading" ? "9" : "-1";
        server().on(heldPath, {Answer::text(late).held(), Answer::text(late)});
        start("a.wav");
        QTRY_VERIFY(!server().requests(heldPath).isEmpty());
        QTRY_COMPARE(layer(), stage);
        if (stage == "downloading")
            QTRY_COMPARE(value("downloading1Percent").toInt(), 100);
        if (closes)
            m_window->close();
        else
            m_window->cancelProcess();
        QCOMPARE(back.size(), closes ? 1 : 0);
        QCOMPARE(layer(), "select_instrument");
        QTRY_COMPARE(server().requests(m_service->cancel).size(), 1);
        QCOMPARE(asked(m_service->cancel).field("songID"), id);
        server().release();
        // The next request comes after the late answer, which must have changed nothing.
        m_window->checkRemains();
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(m_service->saved(), QStringList());
        QCOMPARE(messages.texts(), QStringList());
    }

    void lateAnswers_data()
    {
        const Rows<QByteArray, QString, int> add;
        add("ready", "-1", "success", 1);
        add("failed", "Too quiet", "select_instrument", 0);
    }

    /// Two questions are open when the service answers; the second answer comes too late.
    void lateAnswers()
    {
        const auto [answer, next, downloads] = fetchRow<QByteArray, QString, int>();
        RecordedMessages messages;
        server().on(m_service->remains, {Answer::text(answer).held(), Answer::text("-1").held()});
        start("a.wav");
        QTRY_COMPARE(server().requests(m_service->remains).size(), 1);
        m_window->getRemainsSeconds();
        QTRY_COMPARE(server().requests(m_service->remains).size(), 2);
        // One after the other: two connections may be heard in any order.
        server().releaseFirst();
        QTRY_VERIFY(server().requests(m_service->download).size() + messages.texts().size() == 1);
        server().release();
        QTRY_COMPARE(layer(), next);
        // What the second answer might have asked comes before the second of these.
        m_window->checkRemains();
        m_window->checkRemains();
        QCOMPARE(server().requests(m_service->download).size(), downloads);
        QCOMPARE(messages.texts().size(), 1 - downloads);
    }

    void overtakenOpenings_data() { addNames({"window closed", "another file", "run started"}); }

    /// While an opening waits for the service, what the user does last counts.
    void overtakenOpenings()
    {
        QFETCH(QString, name);
        m_window->openWindow(source("a.wav"));
        server().clearRequests();
        server().on("/generate_204", {Answer::text({}, 204).held(), Answer::text({}, 204)});
        const auto act = [&] {
            QTRY_COMPARE(server().requests("/generate_204").size(), 1);
            if (name == "window closed")
                m_window->close();
            else if (name == "another file")
                m_window->openWindow(source("c.wav"));
            else
                m_window->startProcess();
            server().release();
        };
        QMetaObject::invokeMethod(m_window.get(), act, Qt::QueuedConnection);
        m_window->openWindow(source("b.wav"));
        QCOMPARE(value("fileName"), name == "another file" ? "c.wav" : "a.wav");
        QCOMPARE(m_window->isVisible(), name != "window closed");
        if (name == "run started")
            QTRY_COMPARE(layer(), "success");
    }

    void hindrances_data()
    {
        const Rows<QString, QString, QString> add;
        const QString unprepared =
            "Converting Error: An error occurred preparing the file for upload";
        add("vanished source", "gone.wav", "", unprepared);
        add("address", "http://127.0.0.1:9/a.mp3", "", unprepared);
        add("several files", "concat:a.mp3|b.mp3", "", unprepared);
        add("folder", ".", "", unprepared);
        add("no save folder", "a.wav", "default_path_save",
            "File Processing Error: The folder for saved*");
        add("no temporary folder", "a.wav", "default_path_temp",
            "File Processing Error: The folder for temp*");
    }

    /// What would come to nothing is told before anything is sent.
    void hindrances()
    {
        const auto [file, key, message] = fetchRow<QString, QString, QString>();
        RecordedMessages messages;
        source("a.wav");
        m_window->openWindow(file.contains(':') ? file : m_service->path("in/" + file));
        if (!key.isEmpty())
            set(key, m_service->path("x/y"));
        m_window->startProcess();
        QCOMPARE(messages.texts().size(), 1);
        QVERIFY(isLike(messages.texts().constFirst(), message));
        QCOMPARE(layer(), "select_instrument");
        QVERIFY(server().requests(m_service->proceed).isEmpty());
        QCOMPARE(m_service->saved(), QStringList());
        QCOMPARE(filesIn(m_service->path("Temp")), QStringList());
    }

    void brokenConversions_data()
    {
        const Rows<QString, QString, QString, QString> add;
        const QString upload = "Converting Error: An error occurred preparing the file for upload";
        const QString result = "Converting Error: The result could not be converted:\n\n*";
        add("upload cut off", "cut off", "a.mp3", "", upload);
        add("upload fills the disk", "overflow", "a.mp3", "Temp", upload);
        add("result cut off", "cut off", "a.wav", "", result);
        add("result fills the disk", "overflow", "a.wav", "Save", result);
    }

    /// Nothing half made is uploaded, or left in the save folder as if it were a result.
    void brokenConversions()
    {
        const auto [behaviour, file, full, message] =
            fetchRow<QString, QString, QString, QString>();
        std::optional<SmallDisk> disk;
        if (!full.isEmpty() && !disk.emplace(m_service->path(full)).isMounted())
            QSKIP("No file system can be mounted here.");
        RecordedMessages messages;
        set("default_audio_format", "MP3");
        m_window->openWindow(source(file));
        qputenv("FAKE_DO", behaviour.toLatin1());
        m_window->startProcess();
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY(isLike(messages.texts().constFirst(), message));
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(m_service->saved(), QStringList());
        QCOMPARE(server().requests(m_service->proceed).size(), file == "a.wav" ? 1 : 0);
    }

    void openingResults()
    {
        RecordedMessages messages;
        run("a.wav");
        OpenedUrls opened;
        const QString main = m_service->path("Save/vocals - a.wav");
        const QString mix = m_service->path("Save/Mix Without vocals - a.wav");
        for (const char *type : {"main", "other", "mix", "folder"})
            m_window->openFinalFiles(type);
        QCOMPARE(opened.take(), QStringList({main, main, mix, m_service->path("Save")}));
        for (const auto &[type, path] : {std::pair("other", main), {"mix", mix}}) {
            QFile::remove(path);
            m_window->openFinalFiles(type);
            QCOMPARE(messages.take(),
                     QStringList("File Processing Error: Downloaded files not exists:\n\n" + path));
        }
        QCOMPARE(opened.take(), QStringList());
        QCOMPARE(layer(), "success");
    }

private:
    ScriptedServer &server() { return m_service->server; }
    /// The first request for a path.
    ScriptedRequest asked(const QByteArray &path) { return server().requests(path).value(0); }

    void set(const QString &key, const QVariant &value)
    {
        m_service->store.settings().setValue(key, value);
    }

    QString source(const QString &name) { return writeFile(m_service->path("in/" + name), "RIFF"); }

    void start(const QString &name)
    {
        m_window->openWindow(source(name));
        m_window->startProcess();
    }

    void run(const QString &name)
    {
        start(name);
        QTRY_COMPARE(layer(), "success");
    }

    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }
    QString layer() const { return value("currentLayer").toString(); }

    /// The scripts of the job's requests in their order.
    QString paths() const
    {
        QStringList list;
        for (const ScriptedRequest &request : m_service->server.requests()) {
            if (QList<QByteArray>({m_service->proceed, m_service->repeat, m_service->remains,
                                   m_service->download})
                    .contains(request.path()))
                list << request.path().mid(int(qstrlen("/teko-server/")));
        }
        return list.join(' ');
    }

    const QByteArray m_filesLeft = "/teko-server/processedFilesRemains.php";
    std::unique_ptr<ScriptedService> m_service;
    std::unique_ptr<FileProcessing> m_window;
};

TEKO_TEST_MAIN(TestFileProcessing)
#include "tst_fileprocessing.moc"
