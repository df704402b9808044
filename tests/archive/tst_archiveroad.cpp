// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/appfolder.h"
#include "app/base/programdata.h"
#include "archive/archive.h"
#include "processing/fileprocessing.h"
#include "service/serviceconnection.h"
#include "tests/support/childprocesses.h"
#include "tests/support/madesources.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// Results of runs before a restart of everything, with the real ffmpeg and the real local service.
class TestArchiveRoad : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(makeAppFolder(documentsAppFolder(), localDataAppFolder()).exitCode, 0);
        start();
        QVERIFY(makeSource(m_folder.filePath("long.mp4"), 60));
        QVERIFY(makeSource(m_folder.filePath("film.mp4"), 3));
        QVERIFY(makeSource(m_folder.filePath("song.wav"), 3));
        process("long.mp4", "MP3");
        process("film.mp4", "MP4");
        process("song.wav", "MP3");
        m_service.reset();
        m_store.reset();
        QTRY_COMPARE(childProcesses("teko-service"), QStringList());
        start();
    }

    void init()
    {
        TestCase::init();
        QDir save(m_store->defaultPathSave());
        for (const QString &name : save.entryList(QDir::Files))
            QVERIFY(QFile::remove(save.filePath(name)));
        m_window = std::make_unique<Archive>(*m_store);
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        m_window->openWindow();
        QCOMPARE(files.constFirst().constFirst().toList().size(), 3);
    }

    void cleanup()
    {
        m_window.reset();
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
    }

    void cleanupTestCase()
    {
        m_service.reset();
        QTRY_COMPARE(childProcesses("teko-service"), QStringList());
    }

    void gettingAResult_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("streams");
        const auto row = [](const char *name, int which, const QString &format,
                            const QStringList &files, const QStringList &streams) {
            QTest::newRow(name) << which << format << files << streams;
        };
        row("as stored", song, "mp3", {"bass - song.mp3"}, {"mp3", "audio"});
        row("in another format", song, "flac", {"bass - song.flac", "bass - song.mp3"},
            {"flac", "audio"});
        row("film as stored", film, "mp4", {"bass - film.mp4"}, {"h264", "video", "aac", "audio"});
        row("film in another format", film, "mkv", {"bass - film.mkv", "bass - film.mp4"},
            {"h264", "video", "aac", "audio"});
    }

    void gettingAResult()
    {
        QFETCH(int, row);
        QFETCH(QString, format);
        QFETCH(QStringList, files);
        QFETCH(QStringList, streams);
        RecordedMessages messages;
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(row, false, format);
        QTRY_COMPARE_WITH_TIMEOUT(buttons.size(), 1, 60000);
        QCOMPARE(buttons.constFirst(), QVariantList({row, "play", "download"}));
        QCOMPARE(names(), files);
        const QStringList facts =
            probed(QDir(m_store->defaultPathSave()).filePath(files.constFirst()));
        QCOMPARE(facts.mid(0, facts.size() - 1), streams);
        QVERIFY2(qAbs(facts.constLast().toDouble() - 3) < 0.2, qPrintable(facts.constLast()));
        QCOMPARE(messages.texts(), QStringList());
    }

    void filmThatIsGone()
    {
        RecordedMessages messages;
        const QString path = m_folder.filePath("film.mp4");
        QVERIFY(QFile::rename(path, path + ".away"));
        m_window->operateFile(film, true, "mov");
        QCOMPARE(messages.texts(),
                 QStringList("File Format Error: Cannot download and convert file to mov, because "
                             "original video file is missed:\n\n"
                             + path));
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(film, true, "mp3");
        QTRY_COMPARE_WITH_TIMEOUT(buttons.size(), 1, 60000);
        QCOMPARE(names(), QStringList("Mix Without bass - film.mp3"));
        QVERIFY(QFile::rename(path + ".away", path));
        QCOMPARE(messages.texts().size(), 1);
    }

    void cancelling_data()
    {
        QTest::addColumn<QString>("stage");
        for (const char *stage :
             {"downloading", "converting the download", "converting the stored"})
            QTest::newRow(stage) << stage;
    }

    /// Cancels at a stage, finds nothing half made, and gets the result at the next try.
    void cancelling()
    {
        QFETCH(QString, stage);
        RecordedMessages messages;
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        const auto isStoredMade = [this] { return names().contains("bass - long.mp3"); };
        m_window->operateFile(longest, false, "mkv");
        QWidget *handler = QApplication::activeModalWidget();
        QObject *view = qobject_cast<QQuickWidget *>(handler)->rootObject();
        const QString mode = stage.section(' ', 0, 0);
        QTRY_VERIFY_WITH_TIMEOUT(view->property("mode") == mode
                                     && (!stage.endsWith("stored") || isConvertingStored()),
                                 60000);
        QMetaObject::invokeMethod(view, "cancelProcess");
        QVERIFY(!handler->isVisible());
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
        QCOMPARE(names(),
                 stage.endsWith("stored") ? QStringList("bass - long.mp3") : QStringList());
        QCOMPARE(isStoredMade(), stage.endsWith("stored"));

        m_window->operateFile(longest, false, "mp3");
        if (!isStoredMade())
            QTRY_COMPARE_WITH_TIMEOUT(buttons.size(), 1, 60000);
        QCOMPARE(names(), QStringList("bass - long.mp3"));
        QCOMPARE(messages.texts(), QStringList());
    }

private:
    /// Rows: the newest comes first.
    enum { song, film, longest };

    void start()
    {
        m_store = std::make_unique<ProgramData>(m_folder.filePath("teko.ini"));
        m_store->settings().setValue("default_instrument", "Bass");
        m_service = std::make_unique<ServiceConnection>(*m_store);
        QTRY_VERIFY(m_store->localAccount());
        UserRecord user;
        user.hash = m_store->localAccount()->hash;
        user.subscription.id = 1;
        m_store->setUser(user);
    }

    void process(const QString &source, const QString &format)
    {
        m_store->settings().setValue("default_audio_format", format);
        m_store->settings().setValue("default_video_format", format);
        FileProcessing window(*m_store);
        window.openWindow(m_folder.filePath(source));
        window.startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(window.rootObject()->property("currentLayer"),
                                  QVariant("success"), 90000);
        window.removeUploadedFile();
    }

    QStringList names() const
    {
        return QDir(m_store->defaultPathSave()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    /// The download has been converted: what lies beside the stored file is the next output.
    bool isConvertingStored() const
    {
        return names().contains("bass - long.mp3") && !names().contains("bass - long.mp3.wav")
            && !childProcesses("ffmpeg").isEmpty();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<ServiceConnection> m_service;
    std::unique_ptr<Archive> m_window;
};

TEKO_TEST_MAIN(TestArchiveRoad)
#include "tst_archiveroad.moc"
