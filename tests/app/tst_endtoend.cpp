// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "archive/archive.h"
#include "base/appfolder.h"
#include "base/programdata.h"
#include "processing/fileprocessing.h"
#include "service/serviceconnection.h"
#include "tests/support/childprocesses.h"
#include "tests/support/files.h"
#include "tests/support/madesources.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QQuickItem>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtEndian>

#include <memory>

namespace {

const QStringList videoStreams{"h264", "video", "aac", "audio"};

/// The samples of a WAV file as 16-bit numbers; empty when it is anything else.
QList<qint16> samples(const QString &path)
{
    const QByteArray bytes = readFile(path);
    const qsizetype data = bytes.indexOf("data");
    QList<qint16> result;
    for (qsizetype at = data + 8; data > 0 && at + 1 < bytes.size(); at += 2)
        result << qFromLittleEndian<qint16>(bytes.constData() + at);
    return result;
}

/// Three seconds of these streams.
void checkResult(const QString &path, const QStringList &streams)
{
    const QStringList facts = probed(path);
    QCOMPARE(facts.mid(0, facts.size() - 1), streams);
    QVERIFY2(qAbs(facts.constLast().toDouble() - 3) < 0.2, qPrintable(facts.constLast()));
}

} // namespace

/// Files, and results kept before a restart of everything, with the real ffmpeg and the real local
/// service.
class TestEndToEnd : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(makeAppFolder(documentsAppFolder(), localDataAppFolder()).exitCode, 0);
        for (const char *name : {"short.wav", "short.mp3", "short.mp4"})
            QVERIFY(makeSource(m_folder.filePath(QLatin1String(name)), 3));
        QVERIFY(makeSource(m_folder.filePath("long.mp4"), 60));
        startAll();
        m_window = std::make_unique<FileProcessing>(*m_store);
        for (const auto &[source, format] : {std::pair("short.mp4", "MP4"), {"short.wav", "MP3"}})
            process(source, format);
        m_window->removeUploadedFile();
        m_window.reset();
        m_service.reset();
        m_store.reset();
        QTRY_COMPARE(childProcesses("teko-service"), QStringList());
        startAll();
    }

    void init()
    {
        TestCase::init();
        for (const QString &name : saved())
            QVERIFY(QFile::remove(m_store->defaultPathSave() + '/' + name));
        m_window = std::make_unique<FileProcessing>(*m_store);
        m_archive = std::make_unique<Archive>(*m_store);
    }

    void cleanup()
    {
        m_window->removeUploadedFile();
        m_window.reset();
        m_archive.reset();
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
        QCOMPARE(filesIn(m_store->defaultPathTemp()), QStringList());
    }

    void cleanupTestCase()
    {
        m_service.reset();
        QTRY_COMPARE(childProcesses("teko-service"), QStringList());
    }

    void keptResults_data()
    {
        const Rows<int, QString, QStringList, QStringList> add;
        add("as stored", song, "mp3", {"bass - short.mp3"}, {"mp3", "audio"});
        add("in another format", song, "flac", {"bass - short.flac", "bass - short.mp3"},
            {"flac", "audio"});
        add("video in another format", video, "mkv", {"bass - short.mkv", "bass - short.mp4"},
            videoStreams);
        // The other song's result has the name without a number.
        add("sound of a video that is gone", video, "mp3", {"bass - short (1).mp3"},
            {"mp3", "audio"});
    }

    void keptResults()
    {
        const auto [row, format, files, streams] =
            fetchRow<int, QString, QStringList, QStringList>();
        const bool isGone = QByteArray(QTest::currentDataTag()).endsWith("gone");
        const QString source = m_folder.filePath("short.mp4");
        QVERIFY(!isGone || QFile::rename(source, source + ".away"));
        RecordedMessages messages;
        openArchive();
        QSignalSpy buttons(m_archive.get(), &Archive::changeButtons);
        m_archive->operateFile(row, false, format);
        QTRY_VERIFY_WITH_TIMEOUT(
            buttons.size() > 0 && buttons.constLast() == QVariantList({row, "play", "download"}),
            60000);
        QCOMPARE(saved(), files);
        checkResult(m_store->defaultPathSave() + '/' + files.constFirst(), streams);
        QCOMPARE(messages.texts(), QStringList());
        QVERIFY(!isGone || QFile::rename(source + ".away", source));
    }

    void fileToResults_data()
    {
        const Rows<QString, QString, QStringList> add;
        add("WAV", "short.wav", "WAV", {"pcm_s16le", "audio"});
        add("MP3", "short.mp3", "FLAC", {"flac", "audio"});
        add("MP4", "short.mp4", "MKV", videoStreams);
        add("MP4 to sound", "short.mp4", "MP3", {"mp3", "audio"});
    }

    /// A run, another instrument for the same file, another file.
    void fileToResults()
    {
        const auto [source, format, streams] = fetchRow<QString, QString, QStringList>();
        RecordedMessages messages;
        process(source, format);
        const ResultPaths first = m_window->results();
        checkResult(first.main, streams);
        checkResult(first.mix, streams);
        if (format == "WAV") {
            const auto mix = samples(first.mix);
            auto sum = samples(first.main);
            for (qsizetype i = 0; i < sum.size() && i < mix.size(); ++i)
                sum[i] = qint16(sum.at(i) + mix.at(i));
            QVERIFY(!sum.isEmpty());
            QCOMPARE(sum, samples(m_folder.filePath(source)));
        }

        m_window->proceedAnotherInstrument();
        m_window->rootObject()->setProperty("selectedInstrument", "vocals");
        m_window->startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(layer(), "success", 60000);
        QVERIFY(first.main != m_window->results().main);
        QCOMPARE(saved().size(), 4);
        QCOMPARE(filesIn(m_store->defaultPathTemp()).size(), 1);

        m_window->proceedAnotherFile();
        process("short.wav", "MP3");
        QCOMPARE(filesIn(m_store->defaultPathTemp()).size(), 1);
        QCOMPARE(messages.texts(), QStringList());

        const QString service =
            QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/service";
        QCOMPARE(filesIn(service + "/uploads").size(), 1);
        m_window->forgetUploadedFile();
        QTRY_COMPARE(filesIn(service + "/uploads"), QStringList());
    }

    void cancelling_data()
    {
        addNames({"converting", "uploading", "processing", "downloading", "instrument", "mix"});
    }

    /// Cancels at a stage, finds nothing left behind, and gets the results by pressing "PROCESS"
    /// again.
    void cancelling()
    {
        QFETCH(QString, name);
        RecordedMessages messages;
        openFile("long.mp4", "MP4");
        // Some stages may be over before anybody looks for them: they are cancelled as they begin.
        QStringList announced{"downloading", "instrument"};
        m_isCancelled = false;
        if (name == "uploading")
            connect(m_window->rootObject(), SIGNAL(currentLayerChanged()), this,
                    SLOT(cancelUpload()), Qt::QueuedConnection);
        connect(
            m_window.get(), &FileProcessing::changeLayerWithDelay, this,
            [&] {
                if (announced.isEmpty() || announced.takeFirst() != name)
                    return;
                m_window->cancelProcess();
                m_isCancelled = true;
            },
            Qt::QueuedConnection);
        m_window->startProcess();
        const auto isReached = [&] {
            if (name == "mix")
                return value("convertingText").contains("mix");
            return m_isCancelled || layer() == name;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isReached(), 60000);
        if (!m_isCancelled)
            m_window->cancelProcess();
        QCOMPARE(layer(), "select_instrument");
        QCOMPARE(childProcesses("ffmpeg"), QStringList());
        for (const QString &left : saved())
            QVERIFY2(name == "mix" && !left.endsWith(".wav") && !left.startsWith("Mix"),
                     qPrintable(left));

        m_window->startProcess();
        QTRY_VERIFY_WITH_TIMEOUT(layer() == "success" || layer() == "select_instrument", 60000);
        QCOMPARE(layer(), "success");
        QVERIFY(QFile::exists(m_window->results().mix));
        QCOMPARE(messages.texts(), QStringList());
    }

public slots:
    void cancelUpload()
    {
        if (m_isCancelled || layer() != "uploading")
            return;
        m_window->cancelProcess();
        m_isCancelled = true;
    }

private:
    /// Rows of the archive: the newest comes first.
    enum { song, video };

    /// The store and the service, and the newcomer who is signed in there.
    void startAll()
    {
        m_store = std::make_unique<ProgramData>(m_folder.filePath("teko.ini"));
        m_store->settings().setValue("default_instrument", "Bass");
        m_service = std::make_unique<ServiceConnection>(*m_store);
        UserAuth account(*m_store);
        QSignalSpy signedIn(&account, &UserAuth::signedIn);
        account.initialCheck();
        QTRY_COMPARE(signedIn.size(), 1);
    }

    void openFile(const QString &name, const QString &format)
    {
        m_store->settings().setValue("default_audio_format", format);
        m_store->settings().setValue("default_video_format", format);
        m_window->openWindow(m_folder.filePath(name));
        QCOMPARE(filesIn(m_store->defaultPathTemp()), QStringList());
    }

    void process(const QString &name, const QString &format)
    {
        openFile(name, format);
        m_window->startProcess();
        QTRY_COMPARE_WITH_TIMEOUT(layer(), "success", 90000);
    }

    /// These tests come first, so that it holds nothing but the results of the first runs.
    void openArchive()
    {
        QSignalSpy files(m_archive.get(), &Archive::updateFiles);
        m_archive->openWindow();
        QCOMPARE(files.constLast().constFirst().toList().size(), 2);
    }

    QString value(const char *name) const
    {
        return m_window->rootObject()->property(name).toString();
    }
    QString layer() const { return value("currentLayer"); }
    QStringList saved() const { return filesIn(m_store->defaultPathSave()); }

    const QTemporaryDir m_folder;
    std::unique_ptr<ProgramData> m_store;
    std::unique_ptr<ServiceConnection> m_service;
    std::unique_ptr<FileProcessing> m_window;
    bool m_isCancelled = false; ///< by the test, at the stage that it waited for
    std::unique_ptr<Archive> m_archive;
};

TEKO_TEST(TestEndToEnd)
#include "tst_endtoend.moc"
