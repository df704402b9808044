// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/backendloader.h"
#include "archive/archive.h"
#include "archive/archivehandler.h"
#include "processing/fileprocessing.h"
#include "tests/support/openedurls.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedservice.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"
#include "tests/support/toplevelwindow.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTimer>

#include <memory>
#include <optional>

using Answer = ScriptedAnswer;

namespace {

const QByteArray list = "/teko-server/auth/archive.php";

QByteArray record(const QByteArray &name, const QByteArray &extension,
                  const QByteArray &original = {})
{
    return R"({"name":")" + name + R"(","deleted":"soon","instrument":"vocals","extension":")"
        + extension + R"(","demoFile":"no","local_file_path":")" + original + R"(","ai_id":"17"})";
}

} // namespace

/// The archive's windows with their real views, the scripted service and the fake ffmpeg.
class TestArchive : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("FAKE_DO");
        m_service = std::make_unique<ScriptedService>();
        UserRecord user;
        user.hash = "h+%";
        m_service->store.setUser(user);
        server().on(
            list,
            {Answer::text('[' + record("Song", "wav") + ",7," + record("../Song", "wav") + ']')});
        m_window = std::make_unique<Archive>(m_service->store);
    }

    void cleanup() { m_window.reset(); }

    void opening()
    {
        set("settings_gui_scale", 1.5);
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        QCOMPARE(m_window->size(), QSize(540, 500));
        m_window->openWindow();
        QCOMPARE(m_window->minimumSize(), QSize(810, 600));
        QCOMPARE(value("scf"), QVariant(1.5));
        QCOMPARE(value("isProcessing"), QVariant(false));
        const QVariantList rows = files.constLast().constFirst().toList();
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0].toMap().value("isUsable"), QVariant(true));
        QCOMPARE(rows[1].toMap().value("isUsable"), QVariant(false));
        QCOMPARE(server().requests(list).constFirst().field("hash"), "h+%");
        m_window->openWindow();
        QCOMPARE(server().requests(list).size(), 2);
    }

    void waitingIsSeenAndMayEnd_data()
    {
        addNames({"answer", "close", "close and open again", "destroy"});
    }

    /// The overlay is painted while the answer is awaited, and whatever ends the waiting is safe.
    void waitingIsSeenAndMayEnd()
    {
        QFETCH(QString, name);
        RecordedMessages messages;
        server().on(list, {Answer::text("[]").held(), Answer::text("[]")});
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        QSignalSpy back(m_window.get(), &Archive::showParent);
        bool wasPainted = false;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            if (server().requests(list).isEmpty())
                return;
            look.stop();
            wasPainted = value("isProcessing").toBool()
                && m_window->grab().toImage().pixelColor(5, 5).lightness() < 40;
            if (name == "answer")
                server().release();
            else if (name == "destroy")
                m_window.reset();
            else
                m_window->close();
            if (name == "close and open again")
                m_window->openWindow();
        });
        look.start(1);
        m_window->openWindow();
        QVERIFY(wasPainted);
        QCOMPARE(files.size(), name == "answer" || name == "close and open again" ? 1 : 0);
        QCOMPARE(back.size(), name.startsWith("close") ? 1 : 0);
        QCOMPARE(messages.texts(), QStringList());
    }

    void failures_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        add("out of reach", "/generate_204", Answer::cut(), "No internet connection!");
        add("refusal", list, Answer::text("<b>No</b>"), "<b>No</b>");
        add("HTTP error", list, Answer::text("sorry", 500), "*Refused");
        add("50 MB of records", list, Answer::text('[' + QByteArray(50'000'000, '0') + ']'),
            "*too long*");
    }

    void failures()
    {
        const auto [path, answer, message] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        RecordedMessages messages;
        m_window->openWindow();
        server().on(path, {answer});
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        m_window->openWindow();
        QCOMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts().constFirst(), "Archive Error: " + message),
                 qPrintable(messages.texts().constFirst()));
        QCOMPARE(files.constLast().constFirst().toList().size(), 0);
        QCOMPARE(value("isProcessing"), QVariant(false));
    }

    void downloadingAndPlaying()
    {
        RecordedMessages messages;
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, true, "wav");
        QCOMPARE(handler()->rootObject()->property("mode"), QVariant("downloading"));
        QVERIFY(handler()->isModal());
        QCOMPARE(handler()->frameGeometry().center(), m_window->frameGeometry().center());
        QTRY_COMPARE(buttons.size(), 1);
        QCOMPARE(buttons.constFirst(), QVariantList({0, "download", "play"}));
        QCOMPARE(m_service->saved(), QStringList("Mix Without vocals - Song.wav=the rest"));
        QVERIFY(!handler()->isVisible());
        QCOMPARE(server().requests(m_service->download).constFirst().field("songID"), "17");
        QTRY_COMPARE(server().requests(m_service->cancel).size(), 1);

        m_window->changedFormat(0, "mp3");
        QCOMPARE(buttons.constLast(), QVariantList({0, "download", "download"}));
        OpenedUrls opened;
        m_window->operateFile(0, true, "wav");
        m_window->openFolder();
        const QString save = m_service->path("Save");
        QCOMPARE(opened.take(), QStringList({save + "/Mix Without vocals - Song.wav", save}));
        QCOMPARE(messages.texts(), QStringList());
    }

    void rowsThatNameNoFileDoNothing()
    {
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        QSignalSpy again(m_window.get(), &Archive::reProcessDemo);
        for (const int row : {-1, 1, 2}) {
            m_window->operateFile(row, false, "wav");
            m_window->changedFormat(row, "wav");
            m_window->getFullFile(row);
        }
        QCOMPARE(buttons.size() + again.size(), 0);
        QVERIFY(server().requests(m_service->download).isEmpty());
        m_window->getFullFile(0);
        QCOMPARE(again.constFirst(), QVariantList({"Song.wav", "vocals", "wav", 17}));
    }

    void players_data()
    {
        const Rows<QString, QString, bool> add;
        add("song", "wav", "default_audio_player", true);
        add("song without a player", "wav", "default_video_player", false);
        add("film", "mkv", "default_video_player", true);
        add("film without a player", "mkv", "default_audio_player", false);
    }

    void players()
    {
        const auto [format, key, isInPlayer] = fetchRow<QString, QString, bool>();
        const QString target = writeFile(m_service->path("Save/vocals - Song." + format));
        const QString log = m_service->path("played");
        qputenv("FAKE_LOG", QFile::encodeName(log));
        set(key, "Song Trimlet");
        set("SongTrimlet", QCoreApplication::applicationDirPath() + "/ffmpeg.exe");
        m_window->openWindow();
        OpenedUrls opened;
        m_window->operateFile(0, false, format);
        QCOMPARE(opened.take(), isInPlayer ? QStringList() : QStringList(target));
        if (isInPlayer)
            QTRY_COMPARE(readFile(log), "[\"" + target.toUtf8() + "\"]\n");
        else
            QVERIFY(!QFile::exists(log));
    }

    void brokenConversions_data()
    {
        const Rows<QString, QString, QString> add;
        add("download cut off", "cut off", "", "mp3");
        add("download fills the disk", "overflow", "", "mp3");
        add("stored cut off", "cut off", "mp3", "flac");
        add("stored fills the disk", "overflow", "mp3", "flac");
    }

    /// Neither half a result nor its download stays; the stored one does.
    void brokenConversions()
    {
        const auto [behaviour, before, broken] = fetchRow<QString, QString, QString>();
        RecordedMessages messages;
        std::optional<SmallDisk> disk;
        if (behaviour == "overflow" && !disk.emplace(m_service->path("Save")).isMounted())
            QSKIP("No file system can be mounted here.");
        server().on(list, {Answer::text('[' + record("Song", "mp3") + ']')});
        if (!before.isEmpty())
            writeFile(m_service->path("Save/vocals - Song." + before), "stored");
        m_window->openWindow();
        qputenv("FAKE_DO", behaviour.toLatin1());
        m_window->operateFile(0, false, "flac");
        QTRY_VERIFY(!handler()->isVisible());
        QCOMPARE(messages.texts(),
                 QStringList("File Processing Error: The result could not be converted:\n\n"
                             + m_service->path("Save/vocals - Song." + broken)));
        QCOMPARE(m_service->saved(),
                 before.isEmpty() ? QStringList() : QStringList("vocals - Song.mp3=stored"));
    }

    void filmThatIsGone()
    {
        RecordedMessages messages;
        server().on(list, {Answer::text('[' + record("Song", "mp3", "/gone/%1.mp4") + ']')});
        m_window->openWindow();
        m_window->operateFile(0, false, "mkv");
        QCOMPARE(messages.texts(),
                 QStringList("File Format Error: Cannot download and convert file to mkv, because "
                             "original video file is missed:\n\n/gone/%1.mp4"));
        QVERIFY(server().requests(m_service->download).isEmpty());
        QSignalSpy again(m_window.get(), &Archive::reProcessDemo);
        server().on(list, {Answer::text('[' + record("Song", "MP4", "http://h/a.mp4") + ']')});
        m_window->openWindow();
        m_window->getFullFile(0);
        QVERIFY(messages.texts().constLast().endsWith("is missed:\n\nhttp://h/a.mp4"));
        QCOMPARE(again.size(), 0);
        set("default_path_save", m_service->path("x/y"));
        m_window->operateFile(0, false, "mp3");
        QVERIFY(
            messages.texts().constLast().contains("The folder for saved files cannot be used."));
    }

    void endingADownload_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        add("locations asked", m_service->download, Answer::never(), "");
        add("on its way", "/a", Answer::text("late").held(), "");
        add("refused", m_service->download, Answer::text("Gone"), "File Processing Error: Gone");
        add("missing", "/a", Answer::text("", 404), "File Processing Error: Download error:*");
        add("cut off", "/a", Answer::wrongLength("instr", "10"),
            "File Processing Error: Download error:*");
    }

    void endingADownload()
    {
        const auto [path, answer, message] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        RecordedMessages messages;
        server().on(path, {answer});
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, false, "wav");
        QTRY_VERIFY(!server().requests(path).isEmpty());
        if (message.isEmpty())
            QMetaObject::invokeMethod(handler()->rootObject(), "cancelProcess");
        QTRY_VERIFY(!handler()->isVisible());
        QTRY_COMPARE(server().requests(m_service->cancel).size(), 1);
        server().release();
        // Asks the same server, and so returns after the late answer would have come.
        m_window->loadArchiveFiles();
        QCOMPARE(m_service->saved(), QStringList());
        QVERIFY2(message.isEmpty() ? messages.texts().isEmpty()
                                   : isLike(messages.texts().value(0), message),
                 qPrintable(messages.texts().join('\n')));
        // The same window gets the result at the next try.
        server().on(m_service->download, {Answer::text(m_service->address("/a") + '|')});
        server().on("/a", {Answer::text("instrument")});
        m_window->operateFile(0, false, "wav");
        QTRY_COMPARE(buttons.size(), 1);
        QCOMPARE(m_service->saved(), QStringList("vocals - Song.wav=instrument"));
    }

    void theHandlersWindow()
    {
        ArchiveHandler dialog(m_service->store);
        RecordedMessages messages;
        dialog.openWindow("/s/a.mp3", "/s/a.wav", "/in/<b>Song<br>.mp4");
        const QQuickItem *view = dialog.rootObject();
        QCOMPARE(dialog.minimumSize(), QSize(470, 350));
        QCOMPARE(dialog.maximumSize(), QSize(470, 350));
        QCOMPARE(view->property("fileName"), QVariant("<b>Song<br>.mp4"));
        QVERIFY(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
        dialog.rootObject()->setProperty("mode", "downloading");
        dialog.downloadingFirst(99.8);
        QCOMPARE(view->property("downloadingPercent"), QVariant(100));
        QVERIFY(dialog.isVisible());
        dialog.downloadingFirst(100);
        QCOMPARE(messages.texts(), QStringList("File Processing Error: File not downloaded"));
        QVERIFY(!dialog.isVisible());
        dialog.openWindow("/s/a.mp3", "/s/a.wav", {});
        QCOMPARE(view->property("downloadingPercent"), QVariant(0));
    }

    void fromTheMainWindow_data()
    {
        addNames({"the whole of a demo", "out of reach", "another file meanwhile"});
    }

    void fromTheMainWindow()
    {
        QFETCH(QString, name);
        const bool isOnline = name != "out of reach";
        const bool isRun = name == "the whole of a demo";
        const QByteArray repeat = "/teko-server/repeatDemo.php";
        RecordedMessages messages;
        m_window.reset();
        server().on(repeat, {Answer::never()});
        QUrl connectivity = server().url("/generate_204");
        ProgramData::instance().setEndpointSource([&] {
            return ServiceEndpoints{server().url(), connectivity, {}};
        });
        BackendLoader backend;
        QSignalSpy hidden(&backend, &BackendLoader::hideMainWindow);
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        backend.openArchive();
        QCOMPARE(hidden.size(), 1);
        auto *archive = topLevelWindow<Archive>();
        if (!isOnline)
            connectivity.clear();
        const auto overtake = [&] {
            QTRY_COMPARE(server().requests("/generate_204").size(), 1);
            backend.loadFile(m_service->path("other.wav"));
            server().release();
        };
        if (name == "another file meanwhile") {
            server().clearRequests();
            server().on("/generate_204", {Answer::text({}, 204).held(), Answer::text({}, 204)});
            QMetaObject::invokeMethod(&backend, overtake, Qt::QueuedConnection);
        }
        archive->getFullFile(0);
        QVERIFY(!archive->isVisible());
        QCOMPARE(topLevelWindow<FileProcessing>()->isVisible(), isOnline);
        QCOMPARE(shown.size(), isOnline ? 0 : 1);
        QCOMPARE(messages.texts().size(), isOnline ? 0 : 1);
        if (isRun) {
            QTRY_COMPARE(server().requests(repeat).size(), 1);
            QCOMPARE(server().requests(repeat).constFirst().field("songId"), "17");
        }
        connectivity = server().url("/generate_204");
        shown.clear();
        backend.openArchive();
        archive->close();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(server().requests(repeat).size(), isRun ? 1 : 0);
        ProgramData::instance().setEndpointSource({});
    }

private:
    ScriptedServer &server() { return m_service->server; }
    void set(const QString &key, const QVariant &value)
    {
        m_service->store.settings().setValue(key, value);
    }
    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }
    static ArchiveHandler *handler() { return topLevelWindow<ArchiveHandler>(); }

    std::unique_ptr<ScriptedService> m_service;
    std::unique_ptr<Archive> m_window;
};

TEKO_TEST_MAIN(TestArchive)
#include "tst_archive.moc"
