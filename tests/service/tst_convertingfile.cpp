// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/convertingfile.h"
#include "service/ffmpegrun.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <memory>

namespace {

/// The most memory this process ever held, in bytes; 0 where the system does not tell.
qint64 peakMemory()
{
    for (const QByteArray &line : readFile("/proc/self/status").split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

using Entry = void (ConvertingFile::*)();

Entry entryNamed(const QString &name)
{
    if (name == "upload")
        return &ConvertingFile::prepareToUpload;
    return name == "archived" ? &ConvertingFile::convertFile : &ConvertingFile::prepareFinal;
}

/// One worker with the files of a test folder, working in a thread of its own from the start.
class Conversion
{
public:
    Conversion(const std::atomic<int> &cancel, const QString &entry, const QString &folder,
               const QString &output)
        : m_thread(QThread::create([=, this, &cancel] {
            ConvertingFile worker(&cancel, folder + "/in.wav", folder + '/' + output,
                                  folder + "/original.avi", entry != "mix");
            listen(&worker, &ConvertingFile::doneUploadConverting, "upload");
            listen(&worker, &ConvertingFile::doneMain, "main");
            listen(&worker, &ConvertingFile::doneMix, "mix");
            (worker.*entryNamed(entry))();
        }))
    {
        m_thread->start();
    }
    ~Conversion() { m_thread->wait(); }

    /// The signals in their order, once the worker is through.
    [[nodiscard]] QStringList heard()
    {
        m_thread->wait();
        return m_heard;
    }

private:
    void listen(ConvertingFile *worker, Entry signal, const char *name)
    {
        QObject::connect(worker, signal, worker, [this, name] { m_heard << name; });
    }

    QStringList m_heard;
    std::unique_ptr<QThread> m_thread;
};

const QLatin1String convertUntilKilledOption("--convert-until-killed");

/// Runs as a process of its own that the test kills in the middle of a conversion.
int convertUntilKilled(const QString &folder)
{
    const std::atomic<int> cancel = 0;
    ConvertingFile worker(&cancel, folder + "/in.mp3", folder + "/out.wav", {}, true);
    worker.prepareToUpload();
    return 0;
}

} // namespace

class TestConvertingFile : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_cancel = 0;
        qputenv("STANDIN_LOG", QFile::encodeName(log()));
        qunsetenv("STANDIN_DO");
        for (const char *name : {"in.wav", "original.avi"})
            writeFile(path(name), "source");
    }

    void fates_data()
    {
        const Rows<QString, QString, QString, QString, int, QString, QString> add;
        add("upload", "upload", "", "o.wav", "", 1, "upload", "in.wav o.wav");
        add("audio result", "result", "", "o.mp3", "", 1, "main", "o.mp3");
        add("mix", "mix", "", "o.mp3", "", 1, "mix", "o.mp3");
        add("two passes", "result", "", "o.webm", "o.webm.mp4", 2, "main", "o.webm");
        add("one pass", "mix", "", "o.avi", "o.avi.mp4", 1, "mix", "o.avi o.avi.mp4");
        add("archived audio", "archived", "", "o.mp3", "", 1, "main", "in.wav o.mp3");
        add("archived video", "archived", "", "o.wmv", "o.wmv.mp4", 2, "main", "in.wav o.wmv");
        add("cut off upload", "upload", "cut off", "o.wav", "", 1, "upload", "in.wav");
        add("cut off result", "mix", "cut off", "o.mp3", "", 1, "mix", "");
        add("cut off archived", "archived", "cut off", "o.wmv", "", 2, "main", "in.wav");
        add("failing", "result", "fail", "o.mov", "", 2, "main", "");
        add("crashing", "upload", "crash", "o.wav", "", 1, "upload", "in.wav");
        add("asking", "result", "ask", "o.mp3", "", 1, "main", "o.mp3");
        add("existing result kept", "result", "", "o.mp3", "o.mp3", 1, "main", "o.mp3");
    }

    void fates()
    {
        const auto [entry, behaviour, output, before, runs, signal, files] =
            fetchRow<QString, QString, QString, QString, int, QString, QString>();
        qputenv("STANDIN_DO", behaviour.toLatin1());
        for (const QString &name : before.split(' ', Qt::SkipEmptyParts))
            writeFile(path(name), "old");
        QCOMPARE(start(entry, output)->heard(), QStringList(signal));
        QCOMPARE(recordedRuns(), runs);
        QCOMPARE(remaining(), files);
        if (behaviour == "ask")
            QCOMPARE(readFile(path(output)), "no answer");
        else if (before == output)
            QCOMPARE(readFile(path(output)), "old");
    }

    void cancel_data()
    {
        const Rows<QString, QString, QString, QString, QString> add;
        for (const QString how : {"slow", "hang"}) {
            add("upload: " + how, "upload", how, "o.wav", "upload", "in.wav");
            add("mix: " + how, "mix", how, "o.mp3", "mix", "");
            add("first pass: " + how, "result", how, "o.webm", "", "");
            add("archived: " + how, "archived", how, "o.mp4", "main", "in.wav");
            add("first pass of archived: " + how, "archived", how, "o.mpg", "", "in.wav");
        }
    }

    void cancel()
    {
        const auto [entry, behaviour, output, signal, files] =
            fetchRow<QString, QString, QString, QString, QString>();
        qputenv("STANDIN_DO", behaviour.toLatin1());
        const auto conversion = start(entry, output);
        QTRY_VERIFY(QFile::exists(path(output)) || QFile::exists(path(output + ".mp4")));
        QElapsedTimer timer;
        timer.start();
        m_cancel = 1;
        QCOMPARE(conversion->heard().join(' '), signal);
        QVERIFY2(timer.elapsed() <= 700, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(recordedRuns(), 1);
        QCOMPARE(remaining(), files);
    }

    /// The run may neither overwrite the file nor take it along when it is cancelled.
    void cancelLeavesAnEarlierResultAlone()
    {
        writeFile(path("o.mp3"), "old");
        qputenv("STANDIN_DO", "hang aside");
        const auto conversion = start("archived", "o.mp3");
        QTRY_COMPARE(recordedRuns(), 1);
        m_cancel = 1;
        QCOMPARE(conversion->heard(), QStringList("main"));
        QCOMPARE(readFile(path("o.mp3")), "old");
    }

    void missingProgramEndsAtOnce()
    {
        QObject parent;
        QVERIFY(!runFfmpeg(&parent, path("no such program.exe"), {}, m_cancel));
        QVERIFY(parent.children().isEmpty());
    }

    void floodDoesNotGrowTheProgram()
    {
        qputenv("STANDIN_DO", "flood");
        const qint64 before = peakMemory();
        QCOMPARE(start("upload", "o.wav")->heard(), QStringList("upload"));
        QCOMPARE(readFile(path("o.wav")), "flooded");
        QVERIFY(peakMemory() - before < 20'000'000);
    }

    void endsWithTheProgram()
    {
        qputenv("STANDIN_DO", "hang");
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {convertUntilKilledOption, path()});
        QTRY_VERIFY(QFileInfo(path("out.wav")).size() > 0);
        program.kill();
        QVERIFY(program.waitForFinished());
        qint64 size = -1;
        QElapsedTimer sinceGrowth;
        const auto isStill = [&] {
            const qint64 now = QFileInfo(path("out.wav")).size();
            if (now != size)
                sinceGrowth.start();
            size = now;
            return sinceGrowth.elapsed() > 500;
        };
        QTRY_VERIFY(isStill());
    }

private:
    [[nodiscard]] QString path(const QString &name = {}) const { return m_folder->filePath(name); }
    [[nodiscard]] QString log() const { return m_logs.filePath(m_folder->path().section('/', -1)); }
    [[nodiscard]] int recordedRuns() const { return int(readFile(log()).count('\n')); }

    /// What lies in the folder besides the original, which must be there.
    [[nodiscard]] QString remaining() const
    {
        QStringList names = QDir(path()).entryList(QDir::Files, QDir::Name);
        return names.removeOne("original.avi") ? names.join(' ') : "the original is gone";
    }

    [[nodiscard]] std::unique_ptr<Conversion> start(const QString &entry, const QString &output)
    {
        return std::make_unique<Conversion>(m_cancel, entry, path(), output);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_logs;
    std::atomic<int> m_cancel = 0;
};

int main(int argc, char **argv)
{
    if (argc == 3 && convertUntilKilledOption == QLatin1String(argv[1])) {
        const QCoreApplication app(argc, argv);
        return convertUntilKilled(QString::fromLocal8Bit(argv[2]));
    }
    return runTest(argc, argv, [] { return new TestConvertingFile; });
}
#include "tst_convertingfile.moc"
