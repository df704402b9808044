// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/processing/processingtest.h"

#include <QTimer>

/// Runs that fail or are cancelled, and what they leave.
class TestProcessingEnds : public ProcessingTest
{
    Q_OBJECT

private slots:
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
    void aFailedRepeatIsNoDeadEnd_data()
    {
        const Rows<bool, QString> add;
        add("refused", true, "proceed remains download");
        add("connection lost", false, "repeat remains download");
    }

    /// Only what the service refuses is uploaded again.
    void aFailedRepeatIsNoDeadEnd()
    {
        const auto [isRefused, requests] = fetchRow<bool, QString>();
        RecordedMessages messages;
        run("a.wav");
        server().on(Installation::repeat,
                    {isRefused ? Answer::text("No such file") : Answer::cut()});
        m_window->proceedAnotherInstrument();
        m_window->startProcess();
        QTRY_COMPARE(messages.texts().size(), 1);
        QTRY_COMPARE(layer(), "select_instrument");
        server().on(Installation::repeat, {Answer::text("8")});
        server().clearRequests();
        m_window->startProcess();
        QTRY_COMPARE(layer(), "success");
        QCOMPARE(jobRequests(), requests);
    }

    void ends_data()
    {
        const Rows<QByteArray, QString, QString, bool> add;
        add("while uploading", Installation::proceed, "uploading", "0", false);
        add("while processing", Installation::remains, "processing", "7", false);
        add("while downloading", "/b", "downloading", "7", false);
        add("by closing the window", Installation::remains, "processing", "7", true);
    }

    /// A late answer is ignored, and the next run works like the first.
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

    void preconditionFailures_data()
    {
        const Rows<QString, QString, QString> add;
        const QString unprepared =
            "Converting Error: An error occurred preparing the file for upload";
        add("vanished source", "gone.wav", "", unprepared);
        add("address", "http://127.0.0.1:9/a.mp3", "", unprepared);
        add("several files", "concat:a.mp3|b.mp3", "", unprepared);
        add("broken source", "a.mp3", "cut off", unprepared);
        add("video without a picture", "a.mp4", "no picture",
            "Converting Error: This file has no picture, so that it cannot be saved as MKV.\n*");
        add("no save folder", "a.wav", "default_path_save", "File Processing Error: The folder*");
    }

    /// A run that cannot succeed is refused before anything is sent.
    void preconditionFailures()
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

    void vanishedFolders_data()
    {
        addNames({"before a demo runs in full", "while a file is processed"});
    }

    /// A drive may go at any time; nothing is written elsewhere, and what was asked for ends.
    void vanishedFolders()
    {
        QFETCH(QString, name);
        RecordedMessages messages;
        server().on(Installation::remains, {Answer::text("-1").held()});
        QVERIFY(m_window->openWindow(m_home->source("a.wav")));
        if (name.startsWith("while")) {
            m_window->startProcess();
            QTRY_COMPARE(layer(), "processing");
            QTRY_VERIFY(!server().requests(Installation::remains).isEmpty());
        }
        m_home->set("default_path_save", m_home->path("x/y"));
        if (name.startsWith("before"))
            m_window->runFromDemo("drums", "wav", 17);
        server().release();
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY(messages.texts()[0].contains("The folder for saved files cannot be used."));
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(server().requests(Installation::repeatDemo).size()
                     + server().requests(Installation::download).size(),
                 0);
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
                   "the service delivered was saved unconverted:\n\n*.wav"),
            qPrintable(messages.texts()[0]));
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(m_home->saved(), files);
    }

    /// A service that hangs does not block the end of the program; the local file is removed first.
    void removalAtTheEnd()
    {
        run("a.wav");
        server().on(Installation::removal, {Answer::never()});
        m_window->removeUploadedFile(std::chrono::milliseconds(50));
        QCOMPARE(m_home->temporary(), QStringList());
    }

    /// A job that the service accepts while the program ends is cancelled all the same.
    void acceptedAtTheEnd()
    {
        server().on(Installation::proceed, {Answer::text("9").held()});
        start("a.wav");
        QTRY_COMPARE(server().requests(Installation::proceed).size(), 1);
        m_window->close();
        QTimer::singleShot(0, m_window.get(), [this] { server().release(); });
        m_window->removeUploadedFile();
        QCOMPARE(server().requests(Installation::cancel).constLast().field("songID"), "9");
        QCOMPARE(server().requests(Installation::removal).size(), 1);
    }

    /// The second click of a double click on "PROCESS" does not press "CANCEL", which appears under
    /// the mouse, and the other way round.
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
};

TEKO_TEST(TestProcessingEnds)
#include "tst_processingends.moc"
