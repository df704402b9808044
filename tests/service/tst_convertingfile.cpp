// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/convertingfile.h"
#include "service/ffmpegrun.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>

namespace {

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The most memory this process ever held, in bytes; 0 where the system does not tell.
qint64 peakMemory()
{
    for (const QByteArray &line : content("/proc/self/status").split('\n')) {
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
            write(path(name), "source");
    }

    void fates_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("before"); // files that lie there already
        QTest::addColumn<int>("runs");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("files");
        const auto row = [](const char *name, const char *entry, const char *behaviour,
                            const char *output, const char *before, int runs, const char *signal,
                            const char *files) {
            QTest::newRow(name) << entry << behaviour << output << before << runs << signal
                                << files;
        };
        row("upload", "upload", "", "o.wav", "", 1, "upload", "in.wav o.wav");
        row("audio result", "result", "", "o.mp3", "", 1, "main", "o.mp3");
        row("mix", "mix", "", "o.mp3", "", 1, "mix", "o.mp3");
        row("two passes", "result", "", "o.webm", "o.webm.mp4", 2, "main", "o.webm");
        row("one pass", "mix", "", "o.avi", "o.avi.mp4", 1, "mix", "o.avi o.avi.mp4");
        row("archived audio", "archived", "", "o.mp3", "", 1, "main", "in.wav o.mp3");
        row("archived video", "archived", "", "o.wmv", "o.wmv.mp4", 2, "main", "in.wav o.wmv");
        row("cut off upload", "upload", "cut off", "o.wav", "", 1, "upload", "in.wav");
        row("cut off result", "mix", "cut off", "o.mp3", "", 1, "mix", "");
        row("cut off archived", "archived", "cut off", "o.wmv", "", 2, "main", "in.wav");
        row("failing", "result", "fail", "o.mov", "", 2, "main", "");
        row("crashing", "upload", "crash", "o.wav", "", 1, "upload", "in.wav");
        row("asking", "result", "ask", "o.mp3", "", 1, "main", "o.mp3");
        row("existing result kept", "result", "", "o.mp3", "o.mp3", 1, "main", "o.mp3:old");
    }

    void fates()
    {
        QFETCH(QString, entry);
        QFETCH(QString, behaviour);
        QFETCH(QString, output);
        QFETCH(QString, before);
        QFETCH(int, runs);
        QFETCH(QString, signal);
        QFETCH(QString, files);
        qputenv("STANDIN_DO", behaviour.toLatin1());
        for (const QString &name : before.split(' ', Qt::SkipEmptyParts))
            write(path(name), "old");
        QCOMPARE(start(entry, output)->heard(), QStringList(signal));
        QCOMPARE(recordedRuns(), runs);
        QCOMPARE(remaining(), files.remove(":old"));
        if (behaviour == "ask")
            QCOMPARE(content(path(output)), QByteArray("no answer"));
        else if (before == output)
            QCOMPARE(content(path(output)), QByteArray("old"));
    }

    void cancel_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<QString>("files");
        for (const char *behaviour : {"slow", "hang"}) {
            const auto row = [behaviour](const char *entry, const char *output, const char *signal,
                                         const char *files) {
                QTest::addRow("%s of %s: %s", entry, output, behaviour)
                    << entry << behaviour << output << signal << files;
            };
            row("upload", "o.wav", "upload", "in.wav");
            row("mix", "o.mp3", "mix", "");
            row("result", "o.webm", "", "");
            row("archived", "o.mp4", "main", "in.wav");
            row("archived", "o.mpg", "", "in.wav");
        }
    }

    void cancel()
    {
        QFETCH(QString, entry);
        QFETCH(QString, behaviour);
        QFETCH(QString, output);
        QFETCH(QString, signal);
        QFETCH(QString, files);
        qputenv("STANDIN_DO", behaviour.toLatin1());
        const auto conversion = start(entry, output);
        QTRY_VERIFY(content(path(output)).size() + content(path(output + ".mp4")).size() > 0);
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
        write(path("o.mp3"), "old");
        qputenv("STANDIN_DO", "hang aside");
        const auto conversion = start("archived", "o.mp3");
        QTRY_COMPARE(recordedRuns(), 1);
        m_cancel = 1;
        QCOMPARE(conversion->heard(), QStringList("main"));
        QCOMPARE(content(path("o.mp3")), QByteArray("old"));
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
        QCOMPARE(content(path("o.wav")), QByteArray("flooded"));
        QVERIFY(peakMemory() - before < 20'000'000);
    }

    void endsWithTheProgram()
    {
        qputenv("STANDIN_DO", "hang");
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {convertUntilKilledOption, path()});
        QTRY_VERIFY(!content(path("out.wav")).isEmpty());
        program.kill();
        QVERIFY(program.waitForFinished());
        qint64 size = -1;
        QElapsedTimer sinceGrowth;
        const auto isStill = [&] {
            const qint64 now = content(path("out.wav")).size();
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
    [[nodiscard]] int recordedRuns() const { return int(content(log()).count('\n')); }

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
