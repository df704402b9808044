// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/backendloader.h"
#include "app/base/programdata.h"
#include "archive/archive.h"
#include "archive/archivehandler.h"
#include "processing/fileprocessing.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>
#include <optional>

namespace {

const QByteArray list = "/teko-server/auth/archive.php";
const QByteArray download = "/teko-server/download.php";
const QByteArray cancel = "/teko-server/cancel.php";

QByteArray record(const QByteArray &name, const QByteArray &extension,
                  const QByteArray &original = {})
{
    return R"({"name":")" + name + R"(","deleted":"soon","instrument":"vocals","extension":")"
        + extension + R"(","demoFile":"no","local_file_path":")" + original + R"(","ai_id":"17"})";
}

} // namespace

/// The archive's windows with their real views, the scripted server and the stand-in ffmpeg.
class TestArchive : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("STANDIN_DO");
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_folder->path()).mkdir("Save"));
        m_store = std::make_unique<ProgramData>(m_folder->filePath("teko.ini"));
        m_store->settings().setValue("default_path_save", m_folder->filePath("Save"));
        UserRecord user;
        user.hash = "h+%";
        m_store->setUser(user);
        m_server = std::make_unique<ScriptedServer>();
        m_store->setEndpointSource([this] {
            return ServiceEndpoints{m_server->url(), m_server->url("/generate_204"), {}};
        });
        m_server->on("/generate_204", {ScriptedAnswer::text({}, 204)});
        m_server->on(list,
                     {ScriptedAnswer::text('[' + record("Song", "wav") + ",7,"
                                           + record("../Song", "wav") + ']')});
        m_server->on(download,
                     {ScriptedAnswer::text(m_server->url("/a").toEncoded() + '|'
                                           + m_server->url("/b").toEncoded())});
        m_server->on("/a", {ScriptedAnswer::text("instrument")});
        m_server->on("/b", {ScriptedAnswer::text("the rest")});
        m_server->on(cancel, {ScriptedAnswer::text("1")});
        m_window = std::make_unique<Archive>(*m_store);
    }

    void cleanup() { m_window.reset(); }

    void opening()
    {
        m_store->settings().setValue("settings_gui_scale", 1.5);
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
        QCOMPARE(m_server->requests(list).constFirst().field("hash"), QStringLiteral("h+%"));
        m_window->openWindow();
        QCOMPARE(m_server->requests(list).size(), 2);
    }

    void waitingIsSeenAndMayEnd_data()
    {
        QTest::addColumn<QString>("end");
        for (const char *end : {"answer", "close", "close and open again", "destroy"})
            QTest::newRow(end) << end;
    }

    /// The overlay is painted while the answer is awaited, and whatever ends the waiting is safe.
    void waitingIsSeenAndMayEnd()
    {
        QFETCH(QString, end);
        RecordedMessages messages;
        m_server->on(list, {ScriptedAnswer::text("[]").held(), ScriptedAnswer::text("[]")});
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        QSignalSpy back(m_window.get(), &Archive::showParent);
        bool wasPainted = false;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            if (m_server->requests(list).isEmpty())
                return;
            look.stop();
            wasPainted = value("isProcessing").toBool()
                && m_window->grab().toImage().pixelColor(5, 5).lightness() < 40;
            if (end == "answer")
                m_server->release();
            else if (end == "destroy")
                m_window.reset();
            else
                m_window->close();
            if (end == "close and open again")
                m_window->openWindow();
        });
        look.start(1);
        m_window->openWindow();
        QVERIFY(wasPainted);
        QCOMPARE(files.size(), end == "answer" || end == "close and open again" ? 1 : 0);
        QCOMPARE(back.size(), end.startsWith("close") ? 1 : 0);
        QCOMPARE(messages.texts(), QStringList());
    }

    void failures_data()
    {
        QTest::addColumn<ScriptedAnswer>("answer");
        QTest::addColumn<QString>("message");
        QTest::newRow("refusal") << ScriptedAnswer::text("<b>No</b>") << "Archive Error: <b>No</b>";
        QTest::newRow("HTTP error")
            << ScriptedAnswer::text("sorry", 500) << "Archive Error: *Refused";
        QTest::newRow("50 MB of records")
            << ScriptedAnswer::text('[' + QByteArray(50 * 1024 * 1024, '0') + ']')
            << "Archive Error: *too long*";
    }

    void failures()
    {
        QFETCH(ScriptedAnswer, answer);
        QFETCH(QString, message);
        RecordedMessages messages;
        m_window->openWindow();
        m_server->on(list, {answer});
        QSignalSpy files(m_window.get(), &Archive::updateFiles);
        m_window->openWindow();
        QCOMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts().constFirst(), message),
                 qPrintable(messages.texts().constFirst()));
        QCOMPARE(files.constLast().constFirst().toList().size(), 0);
        QCOMPARE(value("isProcessing"), QVariant(false));
    }

    void unreachableService()
    {
        RecordedMessages messages;
        m_store->setEndpointSource([] { return ServiceEndpoints(); });
        m_window->openWindow();
        QCOMPARE(messages.texts(), QStringList("Archive Error: No internet connection!"));
    }

    void downloadingAndPlaying()
    {
        RecordedMessages messages;
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, true, "wav");
        QCOMPARE(handler()->rootObject()->property("mode"), QVariant("downloading"));
        QVERIFY(handler()->isModal());
        QTRY_COMPARE(buttons.size(), 1);
        QCOMPARE(buttons.constFirst(), QVariantList({0, "download", "play"}));
        QCOMPARE(contents(), QStringList("Mix Without vocals - Song.wav=the rest"));
        QVERIFY(!handler()->isVisible());
        QCOMPARE(m_server->requests(download).constFirst().field("songID"), QStringLiteral("17"));
        QTRY_COMPARE(m_server->requests(cancel).size(), 1);

        m_window->changedFormat(0, "mp3");
        QCOMPARE(buttons.constLast(), QVariantList({0, "download", "download"}));
        QDesktopServices::setUrlHandler("file", this, "noteOpened");
        m_window->operateFile(0, true, "wav");
        m_window->openFolder();
        QDesktopServices::unsetUrlHandler("file");
        const QString save = m_folder->filePath("Save");
        QCOMPARE(m_opened,
                 QList<QUrl>({QUrl::fromLocalFile(save + "/Mix Without vocals - Song.wav"),
                              QUrl::fromLocalFile(save)}));
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
        QVERIFY(m_server->requests(download).isEmpty());
        m_window->getFullFile(0);
        QCOMPARE(again.constFirst(), QVariantList({"Song.wav", "vocals", "wav", 17}));
    }

    void players_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("isInPlayer");
        const auto row = [](const char *name, const char *format, const char *key,
                            bool isInPlayer) {
            QTest::newRow(name) << format << key << isInPlayer;
        };
        row("song", "wav", "default_audio_player", true);
        row("song without a player", "wav", "default_video_player", false);
        row("film", "mkv", "default_video_player", true);
        row("film without a player", "mkv", "default_audio_player", false);
    }

    void players()
    {
        QFETCH(QString, format);
        QFETCH(QString, key);
        QFETCH(bool, isInPlayer);
        const QString target = write("vocals - Song." + format);
        const QString log = m_folder->filePath("played");
        qputenv("STANDIN_LOG", QFile::encodeName(log));
        m_store->settings().setValue(key, "Song Trimlet");
        m_store->settings().setValue("SongTrimlet",
                                     QCoreApplication::applicationDirPath() + "/ffmpeg.exe");
        m_window->openWindow();
        m_opened.clear();
        QDesktopServices::setUrlHandler("file", this, "noteOpened");
        m_window->operateFile(0, false, format);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(m_opened, isInPlayer ? QList<QUrl>() : QList<QUrl>({QUrl::fromLocalFile(target)}));
        if (isInPlayer)
            QTRY_COMPARE(content(log), QString("[\"" + target + "\"]\n"));
        else
            QVERIFY(!QFile::exists(log));
    }

    void brokenConversions_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("broken");
        const auto row = [](const char *name, const char *behaviour, const char *before,
                            const char *broken) {
            QTest::newRow(name) << behaviour << before << broken;
        };
        row("download cut off", "cut off", "", "mp3");
        row("download fills the disk", "overflow", "", "mp3");
        row("stored cut off", "cut off", "mp3", "flac");
        row("stored fills the disk", "overflow", "mp3", "flac");
    }

    /// Neither half a result nor its download stays; the stored one does.
    void brokenConversions()
    {
        QFETCH(QString, behaviour);
        QFETCH(QString, before);
        QFETCH(QString, broken);
        RecordedMessages messages;
        std::optional<SmallDisk> disk;
        if (behaviour == "overflow" && !disk.emplace(m_folder->filePath("Save")).isMounted())
            QSKIP("No file system can be mounted here.");
        m_server->on(list, {ScriptedAnswer::text('[' + record("Song", "mp3") + ']')});
        if (!before.isEmpty())
            write("vocals - Song." + before);
        m_window->openWindow();
        qputenv("STANDIN_DO", behaviour.toLatin1());
        m_window->operateFile(0, false, "flac");
        QTRY_VERIFY(!handler()->isVisible());
        QCOMPARE(messages.texts(),
                 QStringList("File Processing Error: The result could not be converted:\n\n"
                             + m_folder->filePath("Save/vocals - Song." + broken)));
        QCOMPARE(contents(),
                 before.isEmpty() ? QStringList() : QStringList("vocals - Song.mp3=stored"));
    }

    void filmThatIsGone()
    {
        RecordedMessages messages;
        m_server->on(list,
                     {ScriptedAnswer::text('[' + record("Song", "mp3", "/gone/%1.mp4") + ']')});
        m_window->openWindow();
        m_window->operateFile(0, false, "mkv");
        QCOMPARE(messages.texts(),
                 QStringList("File Format Error: Cannot download and convert file to mkv, because "
                             "original video file is missed:\n\n/gone/%1.mp4"));
        QVERIFY(m_server->requests(download).isEmpty());
        QSignalSpy again(m_window.get(), &Archive::reProcessDemo);
        m_server->on(list,
                     {ScriptedAnswer::text('[' + record("Song", "MP4", "http://h/a.mp4") + ']')});
        m_window->openWindow();
        m_window->getFullFile(0);
        QVERIFY(messages.texts().constLast().endsWith("is missed:\n\nhttp://h/a.mp4"));
        QCOMPARE(again.size(), 0);
        m_store->settings().setValue("default_path_save", m_folder->filePath("x/y"));
        m_window->operateFile(0, false, "mp3");
        QVERIFY(
            messages.texts().constLast().contains("The folder for saved files cannot be used."));
    }

    void endingADownload_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<ScriptedAnswer>("answer");
        QTest::addColumn<QString>("message");
        QTest::newRow("locations asked") << download << ScriptedAnswer::never() << "";
        QTest::newRow("on its way")
            << QByteArray("/a") << ScriptedAnswer::text("late").held() << "";
        QTest::newRow("refused") << download << ScriptedAnswer::text("Gone")
                                 << "File Processing Error: Gone";
        QTest::newRow("missing") << QByteArray("/a") << ScriptedAnswer::text("", 404)
                                 << "File Processing Error: Download error:*";
        QTest::newRow("cut off") << QByteArray("/a") << ScriptedAnswer::wrongLength("instr", "10")
                                 << "File Processing Error: Download error:*";
    }

    void endingADownload()
    {
        QFETCH(QByteArray, path);
        QFETCH(ScriptedAnswer, answer);
        QFETCH(QString, message);
        RecordedMessages messages;
        m_server->on(path, {answer});
        m_window->openWindow();
        QSignalSpy buttons(m_window.get(), &Archive::changeButtons);
        m_window->operateFile(0, false, "wav");
        QTRY_VERIFY(!m_server->requests(path).isEmpty());
        if (message.isEmpty())
            QMetaObject::invokeMethod(handler()->rootObject(), "cancelProcess");
        QTRY_VERIFY(!handler()->isVisible());
        QTRY_COMPARE(m_server->requests(cancel).size(), 1);
        m_server->release();
        // Asks the same server, and so returns after the late answer would have come.
        m_window->loadArchiveFiles();
        QCOMPARE(contents(), QStringList());
        QVERIFY2(message.isEmpty() ? messages.texts().isEmpty()
                                   : isLike(messages.texts().value(0), message),
                 qPrintable(messages.texts().join('\n')));
        // The same window gets the result at the next try.
        m_server->on(download, {ScriptedAnswer::text(m_server->url("/a").toEncoded() + '|')});
        m_server->on("/a", {ScriptedAnswer::text("instrument")});
        m_window->operateFile(0, false, "wav");
        QTRY_COMPARE(buttons.size(), 1);
        QCOMPARE(contents(), QStringList("vocals - Song.wav=instrument"));
    }

    void theHandlersWindow()
    {
        ArchiveHandler dialog(*m_store);
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
        QTest::addColumn<bool>("isOnline");
        QTest::newRow("the whole of a demo") << true;
        QTest::newRow("out of reach") << false;
    }

    void fromTheMainWindow()
    {
        QFETCH(bool, isOnline);
        const QByteArray repeat = "/teko-server/repeatDemo.php";
        RecordedMessages messages;
        m_window.reset();
        m_server->on("/teko-server/processedFilesRemains.php", {ScriptedAnswer::text("5")});
        m_server->on(repeat, {ScriptedAnswer::never()});
        QUrl connectivity = m_server->url("/generate_204");
        ProgramData::instance().setEndpointSource([&] {
            return ServiceEndpoints{m_server->url(), connectivity, {}};
        });
        BackendLoader backend;
        QSignalSpy hidden(&backend, &BackendLoader::hideMainWindow);
        QSignalSpy shown(&backend, &BackendLoader::showMainWindow);
        backend.openArchive();
        QCOMPARE(hidden.size(), 1);
        auto *archive = window<Archive>();
        if (!isOnline)
            connectivity.clear();
        archive->getFullFile(0);
        QVERIFY(!archive->isVisible());
        QCOMPARE(window<FileProcessing>()->isVisible(), isOnline);
        QCOMPARE(shown.size(), isOnline ? 0 : 1);
        QCOMPARE(messages.texts().size(), isOnline ? 0 : 1);
        if (isOnline) {
            QTRY_COMPARE(m_server->requests(repeat).size(), 1);
            QCOMPARE(m_server->requests(repeat).constFirst().field("songId"), QStringLiteral("17"));
        }
        connectivity = m_server->url("/generate_204");
        shown.clear();
        backend.openArchive();
        archive->close();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(m_server->requests(repeat).size(), isOnline ? 1 : 0);
        ProgramData::instance().setEndpointSource({});
    }

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private:
    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }

    template <typename Window> static Window *window()
    {
        for (QWidget *candidate : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<Window *>(candidate))
                return found;
        }
        return nullptr;
    }

    static ArchiveHandler *handler() { return window<ArchiveHandler>(); }

    static QString content(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    /// Makes a file in the save folder.
    QString write(const QString &name) const
    {
        QFile file(m_folder->filePath("Save/" + name));
        if (!file.open(QIODevice::WriteOnly) || file.write("stored") != 6)
            qFatal("no stored file");
        return file.fileName();
    }

    /// The files of the save folder as "name=content".
    QStringList contents() const
    {
        QStringList found;
        const QDir dir(m_folder->filePath("Save"));
        for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden, QDir::Name))
            found << name + '=' + content(dir.filePath(name));
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<Archive> m_window;
    QList<QUrl> m_opened;
};

TEKO_TEST_MAIN(TestArchive)
#include "tst_archive.moc"
