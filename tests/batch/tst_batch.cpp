// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/files.h"
#include "tests/support/madesources.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testmain.h"

#include <csignal>

/// The real program with the real ffmpeg and service: exit codes and what it writes where.
class TestBatch : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(makeSource(m_folder.filePath("song one.mp3"), 2));
        QVERIFY(makeSource(m_folder.filePath("long.mp3"), 240));
        for (const char *name : {"text.mp3", "text.wav"})
            writeFile(m_folder.filePath(name), "la la la");
        writeFile(m_folder.filePath("empty.flac"));
        QVERIFY(
            QFile::copy(m_folder.filePath("song one.mp3"), m_folder.filePath("<b>\n%20 🎸.mp3")));
    }

    void calls_data()
    {
        const Rows<QStringList, int, QStringList, QString> add;
        const QStringList vocals{"--instrument", "vocals"};
        add("bad files do not stop the good one",
            QStringList({"gone.mp3", "text.mp3", "text.wav", "empty.flac", ".", "song one.mp3",
                         "--format", "mp3"})
                + vocals,
            1, {"vocals - song one.mp3", "Mix Without vocals - song one.mp3"},
            "*gone.mp3: There is no such file*text.mp3: An error occurred*text.wav: *"
            "empty.flac: An error occurred*This is not a file*");
        add("strange name", QStringList({"<b>\n%20 🎸.mp3", "-f", "wma"}) + vocals, 0,
            {"vocals - <b>\n%20 🎸.wma", "Mix Without vocals - <b>\n%20 🎸.wma"}, "*");
        add("sound to video", QStringList({"song one.mp3", "-f", "mp4"}) + vocals, 1, {},
            "*no picture*");
        add("no format chosen", QStringList({"song one.mp3"}) + vocals, 1, {}, "*--format*");
        add("no instrument chosen", {"song one.mp3", "-f", "mp3"}, 1, {}, "*--instrument*");
        add("no folder", QStringList({"song one.mp3", "-f", "mp3", "-s", "x/y/z"}) + vocals, 1, {},
            "*folder for saved files*");
        add("wrong call", {"song one.mp3", "-i", "flute"}, 2, {}, "*flute*");
    }

    void calls()
    {
        const auto [arguments, exitCode, results, message] =
            fetchRow<QStringList, int, QStringList, QString>();
        QProcess batch;
        start(batch, arguments);
        QVERIFY(batch.waitForFinished(100000));
        const QString notes = QString::fromUtf8(batch.readAllStandardError());
        QVERIFY2(batch.exitCode() == exitCode, qPrintable(notes));
        QVERIFY2(!notes.contains("plugin") && !notes.contains("XDG"), qPrintable(notes));
        QVERIFY2(isLike(notes, message) || message == "*", qPrintable(notes));
        QByteArray expected;
        for (const QString &result : results) {
            expected += QString(m_saved + '/' + result + '\n').toUtf8();
            QVERIFY(filesIn(m_saved).contains(result));
        }
        QCOMPARE(batch.readAllStandardOutput(), expected);
        QCOMPARE(filesIn(m_temporary), QStringList());
    }

    void serviceThatIsAway()
    {
        QProcess batch;
        start(batch, {"song one.mp3", "-i", "bass", "-f", "mp3"},
              {{"TEKO_SERVICE_URL", "http://127.0.0.1:9"}});
        QVERIFY(batch.waitForFinished());
        QCOMPARE(batch.exitCode(), 1);
        QVERIFY(batch.readAllStandardError().contains("An active internet connection is required"));
    }

#ifdef Q_OS_UNIX
    /// The first interrupt while a service keeps silent skips the file, the second ends the
    /// program.
    void interruptWhileWaiting_data()
    {
        addNames({"at last the service answers", "it never does"});
    }

    void interruptWhileWaiting()
    {
        QFETCH(QString, name);
        const bool doesAnswer = name == "at last the service answers";
        ScriptedServer service;
        service.on("/generate_204", {ScriptedAnswer::text({}, 204).held()});
        // Nobody is signed in there, so the first question is about the file.
        const QTemporaryDir home;
        QProcess batch;
        start(batch, {"song one.mp3", "-i", "bass", "-f", "mp3"},
              {{"HOME", home.path()},
               {"TMPDIR", home.path()},
               {"TEKO_SERVICE_URL", service.url().toString()}});
        QTRY_COMPARE(service.requests("/generate_204").size(), 1);
        ::kill(pid_t(batch.processId()), SIGINT);
        QTRY_COMPARE(service.requests("/teko-server/cancel.php").size(), 1);
        if (doesAnswer)
            service.release();
        else
            ::kill(pid_t(batch.processId()), SIGINT);
        QTRY_COMPARE(batch.state(), QProcess::NotRunning);
        QCOMPARE(batch.exitStatus(), doesAnswer ? QProcess::NormalExit : QProcess::CrashExit);
        QCOMPARE(service.requests("/teko-server/proceed.php").size(), 0);
        QCOMPARE(batch.readAllStandardError().contains("Interrupted."), doesAnswer);
        QCOMPARE(QDir(home.path()).entryList({"TEKO-*"}, QDir::Dirs), QStringList());
    }

    void interruptLeavesNothing()
    {
        QProcess batch;
        start(batch, {"long.mp3", "song one.mp3", "-i", "bass", "-f", "mp3"});
        QByteArray notes;
        QTRY_VERIFY_WITH_TIMEOUT((batch.waitForReadyRead(10), notes += batch.readAllStandardError())
                                     .contains("processing"),
                                 60000);
        ::kill(pid_t(batch.processId()), SIGINT);
        QVERIFY(batch.waitForFinished());
        QCOMPARE(batch.exitStatus(), QProcess::NormalExit);
        QCOMPARE(batch.exitCode(), 1);
        QCOMPARE(filesIn(m_temporary), QStringList());
        QCOMPARE(filesIn(m_saved).filter("bass"), QStringList());
    }
#endif

private:
    void start(QProcess &batch, const QStringList &arguments,
               const QMap<QString, QString> &variables = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            environment.insert(variable.key(), variable.value());
        batch.setProcessEnvironment(environment);
        batch.setWorkingDirectory(m_folder.path());
        batch.start(QCoreApplication::applicationDirPath() + "/teko-batch", arguments);
    }

    const QString m_saved = QDir::homePath() + "/Documents/TEKO/Save";
    const QString m_temporary = QDir::homePath() + "/Documents/TEKO/Temp";
    QTemporaryDir m_folder;
};

TEKO_TEST_MAIN(TestBatch)
#include "tst_batch.moc"
