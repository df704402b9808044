// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/base/programdata.h"
#include "processing/fileprocessing.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

namespace {

const QByteArray proceed = "/teko-server/proceed.php";
const QByteArray repeat = "/teko-server/repeat.php";
const QByteArray remains = "/teko-server/remains.php";
const QByteArray download = "/teko-server/download.php";
const QByteArray cancel = "/teko-server/cancel.php";
const QByteArray removal = "/teko-server/removeUploaded.php";

} // namespace

/// The processing window with its real view, the scripted server and the stand-in ffmpeg.
class TestFileProcessing : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        qunsetenv("STANDIN_DO");
        m_folder = std::make_unique<QTemporaryDir>();
        for (const char *name : {"Save", "Temp", "in"})
            QDir(m_folder->path()).mkdir(QLatin1String(name));
        m_store = std::make_unique<ProgramData>(m_folder->filePath("teko.ini"));
        m_store->settings().setValue("default_path_save", m_folder->filePath("Save"));
        m_store->settings().setValue("default_path_temp", m_folder->filePath("Temp"));
        m_store->settings().setValue("default_instrument", "Vocals");
        m_store->settings().setValue("default_audio_format", "WAV");
        m_server = std::make_unique<ScriptedServer>();
        m_store->setEndpointSource([this] {
            return ServiceEndpoints{m_server->url(), m_server->url("/generate_204"), {}};
        });
        m_server->on("/generate_204", {ScriptedAnswer::text({}, 204)});
        m_server->on("/teko-server/processedFilesRemains.php", {ScriptedAnswer::text("5")});
        m_server->on(proceed, {ScriptedAnswer::text("7")});
        m_server->on(repeat, {ScriptedAnswer::text("8")});
        m_server->on(remains, {ScriptedAnswer::text("-1")});
        m_server->on(download,
                     {ScriptedAnswer::text(m_server->url("/a").toEncoded() + '|'
                                           + m_server->url("/b").toEncoded())});
        m_server->on("/a", {ScriptedAnswer::text("instrument")});
        m_server->on("/b", {ScriptedAnswer::text("the rest")});
        m_server->on(cancel, {ScriptedAnswer::text("1")});
        m_server->on(removal, {ScriptedAnswer::text("1")});
        m_window = std::make_unique<FileProcessing>(*m_store);
    }

    void cleanup() { m_window.reset(); }

    void opening()
    {
        m_store->settings().setValue("settings_gui_scale", 1.5);
        m_store->settings().setValue("default_video_format", "MKV");
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
        m_store->settings().remove("settings_gui_scale");
        m_window->openWindow(source("a.b.flac"));
        QCOMPARE(state(),
                 QVariantList({"a.b.flac", "select_instrument", "vocals", "WAV", false, 1.0}));
        QVERIFY(m_window->isVisible());
    }

    void unreachableServiceGivesTheMainWindowBack()
    {
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        m_store->setEndpointSource([] { return ServiceEndpoints(); });
        m_window->openWindow(source("a.wav"));
        m_window->openWindow(source("a.wav"));
        QCOMPARE(
            messages.take(),
            QStringList(2,
                        "No Internet Connection: An active internet connection is required to use "
                        "current application\nPlease check your network settings and try again."));
        QCOMPARE(back.size(), 2);
        QVERIFY(!m_window->isVisible());
    }

    void dailyLimit()
    {
        RecordedMessages messages;
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        m_server->on("/teko-server/processedFilesRemains.php", {ScriptedAnswer::text("0")});
        m_window->openWindow(source("a.wav"));
        QCOMPARE(messages.take(),
                 QStringList("Files Limit: You have already processed 10 files, the maximum "
                             "daily number you can process as a customer."));
        QCOMPARE(back.size(), 1);
    }

    /// A whole run, another instrument for the same file, then another file.
    void threeRuns()
    {
        RecordedMessages messages;
        const QString first = source("Song %20 ü.WAV");
        QVERIFY(QFile::setPermissions(first, QFile::ReadOwner));
        m_window->openWindow(first);
        m_window->startProcess();
        QTRY_COMPARE(value("currentLayer"), QVariant("success"));
        QCOMPARE(paths(), QList<QByteArray>({proceed, remains, download}));
        QCOMPARE(m_server->requests(remains).constFirst().field("songID"), QStringLiteral("7"));
        QCOMPARE(contents("Save"),
                 QStringList({"Mix Without vocals - Song %20 ü.wav=the rest",
                              "vocals - Song %20 ü.wav=instrument"}));
        QVERIFY(value("isDemo").toBool());
        const QStringList temporary = QDir(m_folder->filePath("Temp")).entryList(QDir::Files);
        QCOMPARE(temporary.size(), 1);
        // Windows removes nothing that is read-only.
        QVERIFY(QFile::permissions(m_folder->filePath("Temp/" + temporary.constFirst()))
                & QFile::WriteOwner);

        m_server->clearRequests();
        m_window->proceedAnotherInstrument();
        QCOMPARE(value("currentLayer"), QVariant("select_instrument"));
        m_window->rootObject()->setProperty("selectedInstrument", "bass");
        m_window->startProcess();
        QCOMPARE(value("currentLayer"), QVariant("uploading"));
        QCOMPARE(value("uploadingPercent").toDouble(), 100.0);
        QTRY_COMPARE(value("currentLayer"), QVariant("success"));
        QCOMPARE(paths(), QList<QByteArray>({repeat, remains, download}));
        const ScriptedRequest again = m_server->requests(repeat).constFirst();
        QCOMPARE(QStringList({again.field("instrument"), again.field("uploadedFileName"),
                              again.field("fileName"), again.field("extension"),
                              again.field("version")}),
                 QStringList({"bass", temporary.constFirst(), "Song %20 ü", "wav", "demo"}));
        QCOMPARE(contents("Save").size(), 4);

        m_server->clearRequests();
        QSignalSpy another(m_window.get(), &FileProcessing::openAnotherFile);
        m_window->proceedAnotherFile();
        QCOMPARE(another.size(), 1);
        m_window->openWindow(source("b.wav"));
        QCOMPARE(m_server->requests(removal).constFirst().field("fileName"),
                 temporary.constFirst());
        QCOMPARE(contents("Temp"), QStringList());
        QCOMPARE(messages.texts(), QStringList());
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("keepsUpload");
        const auto row = [](const char *name, const QByteArray &path, const QByteArray &answer,
                            const QString &message, bool keepsUpload) {
            QTest::newRow(name) << path << answer << message << keepsUpload;
        };
        row("refused upload", proceed, "<b>Not</b> a song", "<b>Not</b> a song", false);
        row("failed job", remains, "Too quiet", "Too quiet", true);
        row("no locations", download, "gone", "gone", true);
        row("one result missing", download, "/a|/nothing", "Download error:\n\n*", true);
    }

    void failures()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, answer);
        QFETCH(QString, message);
        QFETCH(bool, keepsUpload);
        RecordedMessages messages;
        answer.replace("/", m_server->url("/").toEncoded());
        m_server->on(
            path,
            {ScriptedAnswer::text(
                path == download ? answer : answer.replace(m_server->url("/").toEncoded(), "/"))});
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts().constFirst(), "File Processing Error: " + message),
                 qPrintable(messages.texts().constFirst()));
        QTRY_COMPARE(value("currentLayer"), QVariant("select_instrument"));
        QCOMPARE(contents("Save"), QStringList());
        QCOMPARE(contents("Temp").size(), keepsUpload ? 1 : 0);
    }

    void cancelling_data()
    {
        QTest::addColumn<QByteArray>("heldPath");
        QTest::addColumn<QString>("layer");
        QTest::addColumn<QString>("id");
        QTest::newRow("uploading") << proceed << "uploading"
                                   << "0";
        QTest::newRow("processing") << remains << "processing"
                                    << "7";
        QTest::newRow("downloading") << QByteArray("/b") << "downloading"
                                     << "7";
    }

    void cancelling()
    {
        QFETCH(QByteArray, heldPath);
        QFETCH(QString, layer);
        QFETCH(QString, id);
        RecordedMessages messages;
        const QByteArray late = heldPath == proceed ? "9" : "-1";
        m_server->on(heldPath, {ScriptedAnswer::text(late).held(), ScriptedAnswer::text(late)});
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_VERIFY(!m_server->requests(heldPath).isEmpty());
        QTRY_COMPARE(value("currentLayer"), QVariant(layer));
        if (layer == "downloading")
            QTRY_COMPARE(value("downloading1Percent").toInt(), 100);
        m_window->cancelProcess();
        QCOMPARE(value("currentLayer"), QVariant("select_instrument"));
        QTRY_COMPARE(m_server->requests(cancel).size(), 1);
        QCOMPARE(m_server->requests(cancel).constFirst().field("songID"), id);
        m_server->release();
        // The next request comes after the late answer, which must have changed nothing.
        m_window->checkRemains();
        QCOMPARE(value("currentLayer"), QVariant("select_instrument"));
        QCOMPARE(contents("Save"), QStringList());
        QCOMPARE(messages.texts(), QStringList());
    }

    void closingABusyWindowCancels()
    {
        QSignalSpy back(m_window.get(), &FileProcessing::showParent);
        m_server->on(remains, {ScriptedAnswer::never()});
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_COMPARE(value("currentLayer"), QVariant("processing"));
        m_window->close();
        QCOMPARE(back.size(), 1);
        QTRY_COMPARE(m_server->requests(cancel).size(), 1);
    }

    void anAnswerThatRepeatsItselfIsAskedAgain()
    {
        m_server->on(remains, {ScriptedAnswer::text("0"), ScriptedAnswer::text("-1")});
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_COMPARE(value("currentLayer"), QVariant("success"));
        QCOMPARE(m_server->requests(remains).size(), 2);
    }

    /// Two questions are open when the service answers; the second answer comes too late.
    void lateAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("layer");
        QTest::addColumn<int>("downloads");
        QTest::newRow("ready") << QByteArray("-1") << "success" << 1;
        QTest::newRow("failed") << QByteArray("Too quiet") << "select_instrument" << 0;
    }

    void lateAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, layer);
        QFETCH(int, downloads);
        RecordedMessages messages;
        m_server->on(remains,
                     {ScriptedAnswer::text(answer).held(), ScriptedAnswer::text("-1").held()});
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_COMPARE(m_server->requests(remains).size(), 1);
        m_window->getRemainsSeconds();
        QTRY_COMPARE(m_server->requests(remains).size(), 2);
        // One after the other: two connections may be heard in any order.
        m_server->releaseFirst();
        QTRY_VERIFY(m_server->requests(download).size() + messages.texts().size() == 1);
        m_server->release();
        QTRY_COMPARE(value("currentLayer"), QVariant(layer));
        m_window->checkRemains();
        QCOMPARE(m_server->requests(download).size(), downloads);
        QCOMPARE(messages.texts().size(), 1 - downloads);
    }

    /// While an opening waits for the service, what the user does last counts.
    void overtakenOpenings_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<bool>("isVisible");
        QTest::newRow("window closed") << "close"
                                       << "a.wav" << false;
        QTest::newRow("another file") << "open"
                                      << "c.wav" << true;
        QTest::newRow("run started") << "start"
                                     << "a.wav" << true;
    }

    void overtakenOpenings()
    {
        QFETCH(QString, action);
        QFETCH(QString, fileName);
        QFETCH(bool, isVisible);
        m_window->openWindow(source("a.wav"));
        m_server->clearRequests();
        m_server->on("/generate_204",
                     {ScriptedAnswer::text({}, 204).held(), ScriptedAnswer::text({}, 204)});
        const auto act = [&] {
            QTRY_COMPARE(m_server->requests("/generate_204").size(), 1);
            if (action == "close")
                m_window->close();
            else if (action == "open")
                m_window->openWindow(source("c.wav"));
            else
                m_window->startProcess();
            m_server->release();
        };
        QMetaObject::invokeMethod(m_window.get(), act, Qt::QueuedConnection);
        m_window->openWindow(source("b.wav"));
        QCOMPARE(value("fileName"), QVariant(fileName));
        QCOMPARE(m_window->isVisible(), isVisible);
        if (action == "start")
            QTRY_COMPARE(value("currentLayer"), QVariant("success"));
    }

    void badSourcesAndFolders_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const char *file, const char *key,
                            const char *message) { QTest::newRow(name) << file << key << message; };
        const char *unprepared =
            "Converting Error: An error occurred preparing the file for upload";
        row("vanished source", "gone.wav", "", unprepared);
        row("address", "http://127.0.0.1:9/a.mp3", "", unprepared);
        row("several files", "concat:a.mp3|b.mp3", "", unprepared);
        row("folder", ".", "", unprepared);
        row("no save folder", "a.wav", "default_path_save",
            "File Processing Error: The folder for saved*");
        row("no temporary folder", "a.wav", "default_path_temp",
            "File Processing Error: The folder for temp*");
    }

    void badSourcesAndFolders()
    {
        QFETCH(QString, file);
        QFETCH(QString, key);
        QFETCH(QString, message);
        RecordedMessages messages;
        if (file == "a.wav")
            source(file);
        m_window->openWindow(file.contains(':') ? file : m_folder->filePath("in/" + file));
        if (!key.isEmpty())
            m_store->settings().setValue(key, m_folder->filePath("x/y"));
        m_window->startProcess();
        QCOMPARE(messages.texts().size(), 1);
        QVERIFY(isLike(messages.texts().constFirst(), message));
        QCOMPARE(value("currentLayer"), QVariant("select_instrument"));
        QVERIFY(m_server->requests(proceed).isEmpty());
    }

    void brokenConversions_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("full");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const char *behaviour, const char *file,
                            const char *full, const char *message) {
            QTest::newRow(name) << behaviour << file << full << message;
        };
        const char *upload = "Converting Error: An error occurred preparing the file for upload";
        const char *result = "Converting Error: The result could not be converted:\n\n*";
        row("upload cut off", "cut off", "a.mp3", "", upload);
        row("upload fills the disk", "overflow", "a.mp3", "Temp", upload);
        row("result cut off", "cut off", "a.wav", "", result);
        row("result fills the disk", "overflow", "a.wav", "Save", result);
    }

    /// Nothing half made is uploaded, or left in the save folder as if it were a result.
    void brokenConversions()
    {
        QFETCH(QString, behaviour);
        QFETCH(QString, file);
        QFETCH(QString, full);
        QFETCH(QString, message);
        std::optional<SmallDisk> disk;
        if (!full.isEmpty() && !disk.emplace(m_folder->filePath(full)).isMounted())
            QSKIP("No file system can be mounted here.");
        RecordedMessages messages;
        m_store->settings().setValue("default_audio_format", "MP3");
        m_window->openWindow(source(file));
        qputenv("STANDIN_DO", behaviour.toLatin1());
        m_window->startProcess();
        QTRY_COMPARE(messages.texts().size(), 1);
        QVERIFY(isLike(messages.texts().constFirst(), message));
        QCOMPARE(value("currentLayer"), QVariant("select_instrument"));
        QCOMPARE(contents("Save"), QStringList());
        QCOMPARE(m_server->requests(proceed).size(), file == "a.wav" ? 1 : 0);
    }

    void openingResults_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("opened");
        QTest::newRow("instrument") << "main"
                                    << "Save/vocals - a.wav";
        QTest::newRow("anything") << "other"
                                  << "Save/vocals - a.wav";
        QTest::newRow("mix") << "mix"
                             << "Save/Mix Without vocals - a.wav";
        QTest::newRow("folder") << "folder"
                                << "Save";
    }

    void openingResults()
    {
        QFETCH(QString, type);
        QFETCH(QString, opened);
        RecordedMessages messages;
        m_window->openWindow(source("a.wav"));
        m_window->startProcess();
        QTRY_COMPARE(value("currentLayer"), QVariant("success"));
        m_opened.clear();
        QDesktopServices::setUrlHandler("file", this, "noteOpened");
        m_window->openFinalFiles(type);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(m_opened, QList<QUrl>({QUrl::fromLocalFile(m_folder->filePath(opened))}));
        if (type == "folder")
            return;
        QFile::remove(m_folder->filePath(opened));
        m_window->openFinalFiles(type);
        QCOMPARE(messages.texts(),
                 QStringList("File Processing Error: Downloaded files not exists:\n\n"
                             + m_folder->filePath(opened)));
        QCOMPARE(value("currentLayer"), QVariant("success"));
    }

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private:
    QString source(const QString &name)
    {
        QFile file(m_folder->filePath("in/" + name));
        if (!file.open(QIODevice::WriteOnly) || file.write("RIFF") != 4)
            qFatal("no source file");
        return file.fileName();
    }

    QVariant value(const char *name) const { return m_window->rootObject()->property(name); }

    /// The files of a folder as "name=content".
    QStringList contents(const QString &folder) const
    {
        QStringList list;
        const QDir dir(m_folder->filePath(folder));
        for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
            QFile file(dir.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                list << name + '=' + QString::fromUtf8(file.readAll());
        }
        return list;
    }

    /// The job's requests in their order.
    QList<QByteArray> paths() const
    {
        QList<QByteArray> list;
        for (const ScriptedRequest &request : m_server->requests()) {
            if (QList<QByteArray>({proceed, repeat, remains, download}).contains(request.path()))
                list << request.path();
        }
        return list;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<FileProcessing> m_window;
    QList<QUrl> m_opened;
};

TEKO_TEST_MAIN(TestFileProcessing)
#include "tst_fileprocessing.moc"
