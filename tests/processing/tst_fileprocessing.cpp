// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/fileprocessing.h"

#include "tests/support/installation.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QQuickItem>
#include <QSignalSpy>

#include <memory>

using Answer = ScriptedAnswer;

/// The processing window with its real view, a scripted service and a fake ffmpeg.
class TestFileProcessing : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("FAKE_DO");
        m_home = std::make_unique<Installation>();
        m_home->set("default_instrument", "Vocals");
        m_home->set("default_audio_format", "WAV");
        m_home->signIn("h");
        m_window = std::make_unique<FileProcessing>(*m_home->store);
        // The view lets a layer be seen for a while before the next one.
        for (QObject *timer : m_window->rootObject()->findChildren<QObject *>()) {
            if (timer->property("layer").isValid())
                timer->setProperty("interval", 1);
        }
    }

    void cleanup()
    {
        m_window.reset();
        m_home.reset();
    }

    void opening()
    {
        m_home->set("settings_gui_scale", 1.5);
        m_home->set("default_video_format", "MKV");
        QVERIFY(m_window->openWindow(m_home->source("Clip <b>.MOV")));
        QCOMPARE(m_window->minimumSize(), QSize(705, 525));
        QCOMPARE(m_window->maximumSize(), QSize(705, 525));
        QCOMPARE(state(), "Clip <b>.MOV select_instrument vocals MKV true 1.5 false");
        m_home->set("settings_gui_scale", 1);
        QVERIFY(m_window->openWindow(m_home->source("a.b.flac")));
        QCOMPARE(state(), "a.b.flac select_instrument vocals WAV false 1 false");
    }

    void refusedOpenings_data()
    {
        const Rows<QByteArray, Answer, QString> add;
        const QString offline =
            "No Internet Connection: An active internet connection is required to use current "
            "application\nPlease check your network settings and try again.";
        add("unreachable", "/generate_204", Answer::text("x", 500), offline);
        add("unreachable service of this computer", "/generate_204", Answer::text("x", 500),
            "Processing Service: The processing service of this computer does not answer.\nIts log "
            "may say why:\n\n*service.log");
        add("daily limit", Installation::filesLeft, Answer::text("0"),
            "Files Limit: You have already processed 10 files, the maximum daily number you can "
            "process as a customer.");
        add("limit that is not known", Installation::filesLeft, Answer::text("0", 500), "");
    }

    /// The main window comes back, each time.
    void refusedOpenings()
    {
        const auto [path, answer, message] = fetchRow<QByteArray, Answer, QString>();
        if (message.contains("log"))
            m_home->store->setEmbeddedServiceLog("/x/service.log");
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        server().on(path, {answer});
        for (int time = 1; time <= 2; ++time) {
            QCOMPARE(m_window->openWindow(m_home->source("a.wav")), message.isEmpty());
            QVERIFY(isLike(messages.take().join(""), message));
            QCOMPARE(back.size(), message.isEmpty() ? 0 : time);
            QCOMPARE(m_window->isVisible(), message.isEmpty());
        }
    }

    void overtakenOpenings_data()
    {
        const Rows<QByteArray, QString> add;
        for (const QByteArray &path : {QByteArray("/generate_204"), Installation::removal}) {
            add("window closed: " + path, path, "");
            add("another file: " + path, path, "c.wav");
        }
        add("run started", Installation::filesLeft, "b.wav");
    }

    /// While an opening waits for the service the window is there, and what the user does last
    /// counts.
    void overtakenOpenings()
    {
        const auto [path, file] = fetchRow<QByteArray, QString>();
        run("a.wav");
        server().clearRequests();
        server().on(path, {Answer::text("5").held(), Answer::text("5")});
        const auto act = [this, path = path, file = file] {
            if (server().requests(path).size() != 1)
                return;
            server().disconnect(m_window.get());
            QVERIFY(m_window->isVisible());
            QCOMPARE(value("isChecking").toBool(), path != Installation::filesLeft);
            if (file.isEmpty())
                m_window->close();
            else if (file == "c.wav")
                QVERIFY(m_window->openWindow(m_home->source(file)));
            else
                m_window->startProcess();
        };
        connect(&server(), &ScriptedServer::requestReceived, m_window.get(), act,
                Qt::QueuedConnection);
        QVERIFY(!m_window->openWindow(m_home->source("b.wav")));
        QCOMPARE(m_window->isVisible(), !file.isEmpty());
        QVERIFY(file.isEmpty() || value("fileName") == file);
        if (file == "b.wav")
            QTRY_COMPARE(layer(), "success");
    }

    /// A whole run with a repeated answer, another instrument for the same file, another file.
    void threeRuns()
    {
        RecordedMessages messages;
        server().on(Installation::remains,
                    {Answer::text("1"), Answer::text("1"), Answer::text("-1")});
        QVERIFY(QFile::setPermissions(m_home->source("Song %20 ü.WAV"), QFile::ReadOwner));
        run("Song %20 ü.WAV");
        QCOMPARE(jobRequests(), "proceed remains remains remains download");
        QCOMPARE(asked(Installation::remains).field("songID"), "7");
        QCOMPARE(m_home->saved(),
                 QStringList({"Mix Without vocals - Song %20 ü.wav=the rest",
                              "vocals - Song %20 ü.wav=instrument"}));
        const QStringList temporary = m_home->temporary();
        QCOMPARE(temporary.size(), 1);
        // Windows removes nothing that is read-only.
        QVERIFY(QFile::permissions(m_home->path("Temp/" + temporary[0])) & QFile::WriteOwner);

        server().clearRequests();
        m_window->proceedAnotherInstrument();
        QCOMPARE(layer(), "select_instrument");
        m_window->rootObject()->setProperty("selectedInstrument", "bass");
        m_window->startProcess();
        QCOMPARE(layer(), "uploading");
        QCOMPARE(value("uploadingPercent").toDouble(), 100.0);
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(jobRequests(), "repeat remains download");
        const ScriptedRequest repeat = asked(Installation::repeat);
        QCOMPARE(repeat.field("uploadedFileName"), temporary[0]);
        QCOMPARE(repeat.field("instrument") + repeat.field("version") + repeat.field("hash"),
                 "bassdemoh");
        QCOMPARE(m_home->saved().size(), 4);

        server().clearRequests();
        QSignalSpy another(m_window.get(), &FileProcessing::openAnotherFile);
        m_window->proceedAnotherFile();
        QCOMPARE(another.size(), 1);
        QVERIFY(m_window->openWindow(m_home->source("b.wav")));
        QCOMPARE(asked(Installation::removal).field("fileName"), temporary[0]);
        QCOMPARE(m_home->temporary(), QStringList());
        QCOMPARE(messages.texts(), QStringList());
    }

    /// When the old WAV file cannot be deleted, the next file is uploaded all the same.
    void theNextFileNeverUsesTheOldUpload()
    {
        run("a.wav");
        const QString old = m_home->path("Temp/" + m_home->temporary()[0]);
        QVERIFY(QFile::remove(old) && QDir().mkpath(old + "/full"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Could not remove"));
        server().clearRequests();
        run("b.wav");
        QCOMPARE(jobRequests(), "proceed remains download");
        QVERIFY(asked(Installation::proceed).body.contains("originalFilePath"));
    }

    void failures_data()
    {
        const Rows<QByteArray, QByteArray, QString, QString> add;
        add("refused upload", "proceed", "<b>Not</b> a song", "<b>Not</b> a song", "proceed");
        add("failed job", "remains", "Too quiet", "Too quiet", "repeat");
        add("no locations", "download", "gone", "gone", "repeat");
        add("one result missing", "download", "SERVER/a|SERVER/nothing", "Download error:\n\n*",
            "repeat");
    }

    /// Behind the message the run is over; the next one begins where it can.
    void failures()
    {
        const auto [path, answer, message, next] =
            fetchRow<QByteArray, QByteArray, QString, QString>();
        MessageWatcher watcher;
        QStringList messages;
        connect(&watcher, &MessageWatcher::shown, this, [&](const QString &, const QString &text) {
            messages << text;
            const qsizetype requests = server().requests().size();
            for (const auto slot :
                 {&FileProcessing::getRemainsSeconds, &FileProcessing::filesReady,
                  &FileProcessing::finalConvertMix, &FileProcessing::successProcces})
                (m_window.get()->*slot)();
            QCOMPARE(server().requests().size(), requests);
        });
        const QByteArray script = "/teko-server/" + path + ".php";
        server().on(script,
                    {Answer::text(QByteArray(answer).replace("SERVER", m_home->address(""))),
                     path == "remains" ? Answer::text("-1") : Answer::text("8")});
        start("a.wav");
        QTRY_COMPARE(messages.size(), 1);
        QVERIFY2(isLike(messages[0], message), qPrintable(messages[0]));
        QTRY_COMPARE(layer(), "select_instrument");
        QCOMPARE(m_home->saved(), QStringList());
        QCOMPARE(m_home->temporary().size(), next == "repeat" ? 1 : 0);
        server().clearRequests();
        m_window->startProcess();
        QTRY_VERIFY(jobRequests().startsWith(next));
    }

    /// The service no longer has the file: the next run uploads it again.
    void aRefusedRepeatIsNoDeadEnd()
    {
        RecordedMessages messages;
        run("a.wav");
        server().clearRequests();
        server().on(Installation::repeat, {Answer::text("No such file")});
        m_window->proceedAnotherInstrument();
        m_window->startProcess();
        QTRY_COMPARE(messages.texts(), QStringList("File Processing Error: No such file"));
        QTRY_COMPARE(layer(), "select_instrument");
        m_window->startProcess();
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(jobRequests(), "repeat proceed remains download");
    }

    void ends_data()
    {
        const Rows<QByteArray, QString, QString, bool> add;
        add("while uploading", Installation::proceed, "uploading", "0", false);
        add("while processing", Installation::remains, "processing", "7", false);
        add("while downloading", "/b", "downloading", "7", false);
        add("by closing the window", Installation::remains, "processing", "7", true);
    }

    /// Nothing is shown of the answer that still comes, and the next run is as good as a first.
    void ends()
    {
        const auto [heldPath, stage, id, closes] = fetchRow<QByteArray, QString, QString, bool>();
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        const bool isUploading = stage == "uploading";
        server().on(heldPath,
                    {Answer::text(isUploading ? "9" : "-1").held(),
                     Answer::text(isUploading ? "8" : "-1")});
        start("a.wav");
        QTRY_VERIFY(!server().requests(heldPath).isEmpty());
        QTRY_COMPARE(layer(), stage);
        if (closes)
            m_window->close();
        else
            m_window->cancelProcess();
        QCOMPARE(back.size(), closes ? 1 : 0);
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(m_home->temporary().size(), isUploading ? 0 : 1);
        QTRY_COMPARE(asked(Installation::cancel).field("songID"), id);
        server().release();
        QTRY_COMPARE(server().requests(Installation::cancel).size(), isUploading ? 2 : 1);
        QVERIFY(m_window->openWindow(m_home->source("b.wav")));
        QCOMPARE(m_home->saved(), QStringList());
        m_window->startProcess();
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(messages.texts(), QStringList());
    }

    /// A question that was still open when the results were reported is answered too late.
    void lateAnswers()
    {
        RecordedMessages messages;
        server().on(Installation::remains,
                    {Answer::text("-1").held(), Answer::text("gone").held()});
        start("a.wav");
        QTRY_COMPARE(server().requests(Installation::remains).size(), 1);
        m_window->getRemainsSeconds();
        QTRY_COMPARE(server().requests(Installation::remains).size(), 2);
        server().releaseFirst();
        QTRY_COMPARE(server().requests(Installation::download).size(), 1);
        server().release();
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(messages.texts(), QStringList());
    }

    /// Each download reports its end once; whatever comes twice starts nothing twice.
    void downloadsThatReportTwice()
    {
        m_home->set("default_audio_format", "MP3");
        server().on("/a", {Answer::never()});
        server().on("/b", {Answer::never()});
        start("a.wav");
        QTRY_COMPARE(server().requests("/b").size(), 1);
        for (int time = 0; time < 2; ++time)
            m_window->downloadingFirst(100);
        QCOMPARE(value("convertingText"), "Converting to selected format");
        m_window->downloadingSecond(100);
        QCOMPARE(value("convertingText"),
                 "Converting 'vocals - file.wav'\nto selected output format");
        m_window->rootObject()->setProperty("convertingText", "once");
        m_window->downloadingSecond(100);
        QCOMPARE(value("convertingText"), "once");
    }

    void demoNotes_data()
    {
        const Rows<QString, int, bool> add;
        add("WAV, subscriber", "WAV", 1, true);
        add("MP3, subscriber", "MP3", 1, false);
        add("MP3, demo user", "MP3", 0, true);
    }

    /// A WAV run leaves the note as it was.
    void demoNotes()
    {
        const auto [format, subscription, isDemo] = fetchRow<QString, int, bool>();
        m_home->signIn("h", subscription);
        m_home->set("default_audio_format", format);
        server().on("/a", {Answer::text("instrument")});
        run("a.wav");
        QCOMPARE(value("isDemo").toBool(), isDemo);
    }

    /// A demo in full begins like any run, whatever the last one left on the counters.
    void fullRunOfADemo()
    {
        m_home->signIn("h", 1);
        server().on(Installation::repeatDemo, {Answer::text("9").held()});
        run("a.wav");
        QVERIFY(m_window->openWindow(m_home->source("b.wav")));
        m_window->runFromDemo("drums", "mp3", 17);
        QCOMPARE(value("downloading1Percent").toInt(), 0);
        QCOMPARE(value("uploadingPercent").toInt(), 100);
        QTRY_COMPARE(server().requests(Installation::repeatDemo).size(), 1);
        QCOMPARE(asked(Installation::repeatDemo).body, "hash=h&extension=mp3&songId=17");
        server().release();
        QTRY_COMPARE(layer(), "success");
        QVERIFY(QFile::exists(m_home->path("Save/drums - b.mp3")));
        QVERIFY(!value("isDemo").toBool());
    }

    void hindrances_data()
    {
        const Rows<QString, QString, QString> add;
        const QString unprepared =
            "Converting Error: An error occurred preparing the file for upload";
        add("vanished source", "gone.wav", "", unprepared);
        add("address", "http://127.0.0.1:9/a.mp3", "", unprepared);
        add("several files", "concat:a.mp3|b.mp3", "", unprepared);
        add("broken source", "a.mp3", "cut off", unprepared);
        add("film without a picture", "a.mp4", "no picture",
            "Converting Error: This file has no picture, so that it cannot be saved as MKV.\n*");
        add("no save folder", "a.wav", "default_path_save", "File Processing Error: The folder*");
    }

    /// What would come to nothing is shown before anything is sent.
    void hindrances()
    {
        const auto [file, cause, message] = fetchRow<QString, QString, QString>();
        RecordedMessages messages;
        m_home->set("default_video_format", "MKV");
        const bool isMade = file.startsWith("a.");
        m_window->openWindow(file.contains(':') ? file
                                 : isMade       ? m_home->source(file)
                                                : m_home->path("in/" + file));
        if (cause.startsWith("default"))
            m_home->set(cause, m_home->path("x/y"));
        else
            qputenv("FAKE_DO", cause.toLatin1());
        m_window->startProcess();
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts()[0], message), qPrintable(messages.texts()[0]));
        QCOMPARE(layer(), "select_instrument");
        QVERIFY(server().requests(Installation::proceed).isEmpty());
        QCOMPARE(m_home->temporary(), QStringList());
    }

    void unconvertedResults_data()
    {
        const Rows<QStringList> add;
        add("cut off",
            {"Mix Without vocals - a.wav=the rest", "vocals - a.mp3=earlier",
             "vocals - a.wav=instrument"});
        add("cut off mix",
            {"Mix Without vocals - a.wav=the rest", "vocals - a (1).mp3=converted",
             "vocals - a.mp3=earlier"});
    }

    /// What the service delivered is saved all the same.
    void unconvertedResults()
    {
        const auto [files] = fetchRow<QStringList>();
        RecordedMessages messages;
        m_home->set("default_audio_format", "MP3");
        writeFile(m_home->path("Save/vocals - a.mp3"), "earlier");
        qputenv("FAKE_DO", QTest::currentDataTag());
        start("a.wav");
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY2(
            isLike(messages.texts()[0],
                   "Converting Error: The result could not be converted:\n\n*a (1).mp3\n\nWhat "
                   "the service delivered was saved as it came:\n\n*.wav"),
            qPrintable(messages.texts()[0]));
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(m_home->saved(), files);
    }

    void openingResults()
    {
        RecordedMessages messages;
        run("a.wav");
        OpenedUrls opened;
        m_window->openFinalFiles("main");
        const QString main = m_home->path("Save/vocals - a.wav");
        QCOMPARE(opened.take(), QStringList(main));
        QFile::remove(main);
        m_window->openFinalFiles("main");
        QCOMPARE(messages.take(),
                 QStringList("File Processing Error: Downloaded files not exists:\n\n" + main));
        QCOMPARE(layer(), "success");
    }

    /// A service that hangs keeps nobody at the end of the program, and the file goes first.
    void removalAtTheEnd()
    {
        run("a.wav");
        server().on(Installation::removal, {Answer::never()});
        m_window->removeUploadedFile(std::chrono::milliseconds(50));
        QCOMPARE(m_home->temporary(), QStringList());
    }

    /// The second half of a double click on "PROCESS" is not meant for "CANCEL", which comes to lie
    /// under the mouse, and the other way round.
    void doubleClicks()
    {
        server().on(Installation::proceed, {Answer::never()});
        QVERIFY(m_window->openWindow(m_home->source("a.wav")));
        for (const auto &[clicked, next, stage] : {std::tuple("PROCESS", "CANCEL", "uploading"),
                                                   {"CANCEL", "PROCESS", "select_instrument"}}) {
            QTRY_VERIFY(button(clicked) && button(clicked)->width() > 0);
            const QPoint place = centreOf(button(clicked));
            QTest::mouseClick(m_window.get(), Qt::LeftButton, {}, place);
            QCOMPARE(layer(), stage);
            const auto isUnderTheMouse = [&] {
                const QQuickItem *item = button(next);
                return item && item->contains(item->mapFromScene(place));
            };
            QTRY_VERIFY(isUnderTheMouse());
            QTest::mouseDClick(m_window.get(), Qt::LeftButton, {}, place);
            QTest::mouseRelease(m_window.get(), Qt::LeftButton, {}, place);
            QCOMPARE(layer(), stage);
        }
    }

private:
    ScriptedServer &server() { return m_home->server; }
    /// The first request for a path.
    ScriptedRequest asked(const QByteArray &path) { return server().requests(path).value(0); }

    void start(const QString &name)
    {
        QVERIFY(m_window->openWindow(m_home->source(name)));
        m_window->startProcess();
    }

    void run(const QString &name)
    {
        start(name);
        QTRY_COMPARE(layer(), "success");
    }

    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }
    QString layer() const { return value("currentLayer").toString(); }

    QString state() const
    {
        QStringList values;
        for (const char *name : {"fileName", "currentLayer", "selectedInstrument",
                                 "selectedOutputFormat", "isVideo", "scf", "isChecking"})
            values << value(name).toString();
        return values.join(' ');
    }

    /// The job's requests in their order.
    QString jobRequests() const
    {
        QStringList list;
        for (const ScriptedRequest &request : m_home->server.requests()) {
            if (QList<QByteArray>({Installation::proceed, Installation::repeat,
                                   Installation::remains, Installation::download})
                    .contains(request.path()))
                list << QString::fromLatin1(request.path()).section('/', 2).chopped(4);
        }
        return list.join(' ');
    }

    /// The visible button of that text.
    const QQuickItem *button(const QString &text) const
    {
        const auto items = m_window->rootObject()->findChildren<QQuickItem *>();
        for (const QQuickItem *item : items) {
            if (item->isVisible() && item->inherits("QQuickAbstractButton")
                && item->property("text") == text)
                return item;
        }
        return nullptr;
    }

    static QPoint centreOf(const QQuickItem *item)
    {
        return item->mapToScene(item->boundingRect().center()).toPoint();
    }

    std::unique_ptr<Installation> m_home;
    std::unique_ptr<FileProcessing> m_window;
};

TEKO_TEST(TestFileProcessing)
#include "tst_fileprocessing.moc"
