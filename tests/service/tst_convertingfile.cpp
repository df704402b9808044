// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/convertingfile.h"

#include "service/ffmpegrun.h"
#include "service/workerthread.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace {

using Signal = void (ConvertingFile::*)();

/// The most memory this process ever held, in bytes; 0 where the system does not tell.
qint64 peakMemory()
{
    for (const QByteArray &line : readFile("/proc/self/status").split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

} // namespace

/// Conversions on a thread of their own, with a fake ffmpeg.
class TestConvertingFile : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_thread = std::make_unique<WorkerThread>();
        m_cancel = 0;
        m_done = 0;
        qputenv("FAKE_LOG", QFile::encodeName(log()));
        qunsetenv("FAKE_DO");
        for (const char *name : {"in.wav", "original.avi"})
            writeFile(path(name), "source");
    }

    void cleanup()
    {
        m_cancel = 1;
        m_thread.reset();
    }

    void outcomes_data()
    {
        const Rows<QString, QString, QString, QString, int, QString> add;
        add("upload", "upload", "", "o.wav", "", 1, "in.wav o.wav");
        add("audio result", "main", "", "o.mp3", "", 1, "o.mp3");
        add("mix", "mix", "", "o.mp3", "", 1, "o.mp3");
        add("two passes", "main", "", "o.webm", "o.webm.mp4", 2, "o.webm");
        add("one pass", "mix", "", "o.avi", "o.avi.mp4", 1, "o.avi o.avi.mp4");
        add("archived audio", "archived", "", "o.mp3", "", 1, "in.wav o.mp3");
        add("archived video", "archived", "", "o.wmv", "o.wmv.mp4", 2, "in.wav o.wmv");
        add("cut off upload", "upload", "cut off", "o.wav", "", 1, "in.wav");
        add("cut off result", "mix", "cut off", "o.mp3", "", 1, "in.wav");
        add("cut off archived", "archived", "cut off", "o.wmv", "", 2, "in.wav");
        add("crashing", "upload", "crash", "o.wav", "", 1, "in.wav");
        add("asking", "main", "ask", "o.mp3", "", 1, "o.mp3");
        add("existing result kept", "main", "", "o.mp3", "o.mp3", 1, "o.mp3");
    }

    void outcomes()
    {
        const auto [entry, behaviour, output, before, runs, files] =
            fetchRow<QString, QString, QString, QString, int, QString>();
        qputenv("FAKE_DO", behaviour.toLatin1());
        for (const QString &name : before.split(' ', Qt::SkipEmptyParts))
            writeFile(path(name), "old");
        start(entry, output);
        QTRY_COMPARE(m_done, 1);
        QCOMPARE(recordedRuns(), runs);
        QCOMPARE(remaining(), files);
        if (behaviour == "ask")
            QCOMPARE(readFile(path(output)), "no answer");
        else if (before == output)
            QCOMPARE(readFile(path(output)), "old");
    }

    void fullDisks_data()
    {
        const Rows<int, bool> add;
        add("one block left", 2 * 4096, true);
        add("nothing left", 4096, false);
    }

    /// ffmpeg reports success for a file whose end the disk did not take.
    void fullDisks()
    {
        const auto [room, isKept] = fetchRow<int, bool>();
        const SmallDisk disk(path("disk"));
        if (!disk.isMounted())
            QSKIP("Mounting a small disk takes the rights of an administrator.");
        writeFile(path("disk/filler"), QByteArray(1'048'576 - room, 'x'));
        start("upload", "disk/o.wav");
        QTRY_COMPARE(m_done, 1);
        QCOMPARE(QFile::exists(path("disk/o.wav")), isKept);
    }

    void cancelling_data()
    {
        const Rows<QString, QString, QString, QString> add;
        for (const QString how : {"slow", "hang"}) {
            add("upload: " + how, "upload", how, "o.wav", "in.wav");
            add("mix: " + how, "mix", how, "o.mp3", "");
            add("first pass of archived: " + how, "archived", how, "o.mpg", "in.wav");
        }
    }

    void cancelling()
    {
        const auto [entry, behaviour, output, files] =
            fetchRow<QString, QString, QString, QString>();
        qputenv("FAKE_DO", behaviour.toLatin1());
        start(entry, output);
        QTRY_VERIFY(QFile::exists(path(output)) || QFile::exists(path(output + ".mp4")));
        m_cancel = 1;
        m_thread->stop();
        QCOMPARE(recordedRuns(), 1);
        QCOMPARE(remaining(), files);
        QCoreApplication::processEvents();
        QCOMPARE(m_done, 0);
    }

    void cancelLeavesAnEarlierResultAlone()
    {
        writeFile(path("o.mp3"), "old");
        qputenv("FAKE_DO", "hang aside");
        start("archived", "o.mp3");
        QTRY_COMPARE(recordedRuns(), 1);
        m_cancel = 1;
        m_thread->stop();
        QCOMPARE(readFile(path("o.mp3")), "old");
    }

    void missingProgramEndsAtOnce()
    {
        QVERIFY(!runFfmpeg(this, path("no such program.exe"), {}, m_cancel));
    }

    void floodDoesNotGrowTheProgram()
    {
        qputenv("FAKE_DO", "flood");
        const qint64 before = peakMemory();
        start("upload", "o.wav");
        QTRY_COMPARE(m_done, 1);
        QCOMPARE(readFile(path("o.wav")), "flooded");
        QVERIFY(peakMemory() - before < 20'000'000);
    }

    /// The other program is this one, in the test below.
    void endsWithTheProgram()
    {
        qputenv("CONVERT_IN", QFile::encodeName(m_folder->path()));
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {"convertsUntilKilled"});
        qunsetenv("CONVERT_IN");
        QTRY_VERIFY(QFileInfo(path("out.wav")).size() > 0);
        program.kill();
        QVERIFY(program.waitForFinished());
        // A file that nobody writes any more keeps its size.
        qint64 size = -1;
        const auto isStill = [&] {
            const qint64 before = std::exchange(size, QFileInfo(path("out.wav")).size());
            return before == size;
        };
        QTRY_VERIFY(isStill());
    }

    void convertsUntilKilled()
    {
        const QString folder = QFile::decodeName(qgetenv("CONVERT_IN"));
        qputenv("FAKE_DO", "hang");
        if (!folder.isEmpty())
            ConvertingFile(&m_cancel, folder + "/in.wav", folder + "/out.wav", {}, true)
                .prepareToUpload();
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString log() const { return m_logs.filePath(m_folder->path().section('/', -1)); }
    [[nodiscard]] int recordedRuns() const { return int(readFile(log()).count('\n')); }

    /// What lies in the folder besides the original, which must be there.
    [[nodiscard]] QString remaining() const
    {
        QStringList names = filesIn(m_folder->path());
        return names.removeOne("original.avi") ? names.join(' ') : "the original is gone";
    }

    void start(const QString &entry, const QString &output)
    {
        auto worker = std::make_unique<ConvertingFile>(&m_cancel, path("in.wav"), path(output),
                                                       path("original.avi"), entry == "main");
        const auto run = [&](Signal slot, Signal done) {
            m_thread->start(std::move(worker), slot, done, this, &TestConvertingFile::countDone);
        };
        if (entry == "upload")
            run(&ConvertingFile::prepareToUpload, &ConvertingFile::doneUploadConverting);
        else if (entry == "archived")
            run(&ConvertingFile::convertFile, &ConvertingFile::doneMain);
        else
            run(&ConvertingFile::prepareFinal,
                entry == "mix" ? &ConvertingFile::doneMix : &ConvertingFile::doneMain);
    }

    void countDone() { ++m_done; }

    std::unique_ptr<QTemporaryDir> m_folder;
    const QTemporaryDir m_logs;
    std::atomic<int> m_cancel = 0;
    std::unique_ptr<WorkerThread> m_thread;
    int m_done = 0;
};

TEKO_TEST(TestConvertingFile)
#include "tst_convertingfile.moc"
