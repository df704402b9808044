// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/processing/processingtest.h"

/// Whole runs, from the choice of a file to the results.
class TestFileProcessing : public ProcessingTest
{
    Q_OBJECT

private slots:
    void opening()
    {
        m_home->set("settings_gui_scale", 1.5);
        m_home->set("default_video_format", "MKV");
        QVERIFY(m_window->openWindow(m_home->source("Clip &lt;b.MOV")));
        QCOMPARE(m_window->minimumSize(), QSize(705, 525));
        QCOMPARE(m_window->maximumSize(), QSize(705, 525));
        QCOMPARE(state(), "Clip &lt;b.MOV select_instrument vocals MKV true 1.5 false");
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

    /// While an opening waits for the service the window is shown, and the latest action wins.
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
        m_window->downloadingSecond(99.8);
        QCOMPARE(value("downloading2Percent").toInt(), 99);
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
};

TEKO_TEST(TestFileProcessing)
#include "tst_fileprocessing.moc"
