// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/files.h"
#include "tests/support/madesources.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testmain.h"

#include <QProcess>
#include <QSettings>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

/// The real program with the real ffmpeg and service: exit codes and what it writes where.
class TestBatch : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(makeSource(m_folder.filePath("song one.mp3"), 2));
        QVERIFY(makeSource(m_folder.filePath("long.mp3"), 240));
        writeFile(m_folder.filePath("text.mp3"), "la la la");
        writeFile(m_folder.filePath("empty.flac"));
        QVERIFY(
            QFile::copy(m_folder.filePath("song one.mp3"), m_folder.filePath("<b>\n%20 🎸.mp3")));
    }

    void calls_data()
    {
        const Rows<QStringList, int, QStringList, QString> add;
        const QStringList vocals{"--instrument", "vocals"};
        add("bad files do not stop the good one",
            QStringList({"gone.mp3", "text.mp3", "empty.flac", ".", "song one.mp3", "-f", "mp3"})
                + vocals,
            1, {"vocals - song one.mp3", "Mix Without vocals - song one.mp3"},
            "*gone.mp3: There is no such file*text.mp3: An error occurred*empty.flac: An error "
            "occurred*This is not a file*");
        add("strange name", QStringList({"<b>\n%20 🎸.mp3", "-f", "wma"}) + vocals, 0,
            {"vocals - <b>\n%20 🎸.wma", "Mix Without vocals - <b>\n%20 🎸.wma"}, "*");
        add("sound to video", QStringList({"song one.mp3", "-f", "mp4"}) + vocals, 1, {},
            "*no picture*");
        add("no format chosen", QStringList({"song one.mp3"}) + vocals, 1, {}, "*--format*");
        add("no instrument chosen", {"song one.mp3", "-f", "mp3"}, 1, {}, "*--instrument*");
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
        QVERIFY2(!notes.contains("plugin") && !notes.contains("LOGGING"), qPrintable(notes));
        QVERIFY2(isLike(notes, message), qPrintable(notes));
        QByteArray expected;
        for (const QString &result : results) {
            expected += QString(m_home + "/Save/" + result + '\n').toUtf8();
            QVERIFY(filesIn(m_home + "/Save").contains(result));
        }
        QCOMPARE(batch.readAllStandardOutput(), expected);
        QCOMPARE(filesIn(m_home + "/Temp"), QStringList());
    }

    /// Also that the log goes to its file when the settings ask for one, and nowhere else.
    void serviceThatIsAway()
    {
        QSettings settings(m_home + "/teko.ini", QSettings::IniFormat);
        settings.setValue("APP_LOGFILE_ENABLED", true);
        settings.sync();
        QProcess batch;
        start(batch, {"song one.mp3", "-i", "bass", "-f", "mp3"},
              {{"TEKO_SERVICE_URL", "http://127.0.0.1:9"}});
        QVERIFY(batch.waitForFinished());
        QCOMPARE(batch.exitCode(), 1);
        const QByteArray notes = batch.readAllStandardError();
        QVERIFY(notes.contains("An active internet connection is required"));
        QVERIFY(!notes.contains("openWindow"));
        const QString log = filesIn(m_home + "/Logs").value(0);
        QVERIFY(readFile(m_home + "/Logs/" + log).contains("FileProcessing::openWindow"));
        settings.remove("APP_LOGFILE_ENABLED");
    }

#ifdef Q_OS_UNIX
    void interrupts_data()
    {
        addNames({"/generate_204", "/teko-server/removeUploaded.php"});
    }

    /// Ctrl+C works while the service does not answer.
    void interrupts()
    {
        QFETCH(QString, name);
        ScriptedServer service;
        for (const auto &[path, answer] : {std::pair("generate_204", ""),
                                           {"teko-server/processedFilesRemains.php", "5"},
                                           {"teko-server/proceed.php", "7"},
                                           {"teko-server/remains.php", "60"},
                                           {"teko-server/cancel.php", "1"}})
            service.on(QByteArray("/") + path, {ScriptedAnswer::text(answer)});
        service.on(name.toLatin1(), {ScriptedAnswer::never()});
        const QTemporaryDir home;
        QProcess batch;
        start(batch, {"song one.mp3", "-i", "bass", "-f", "mp3"},
              {{"HOME", home.path()},
               {"TMPDIR", home.path()},
               {"TEKO_SERVICE_URL", service.url().toString()}});
        const bool isWaiting = name == "/generate_204";
        QTRY_VERIFY(
            !service.requests(isWaiting ? "/generate_204" : "/teko-server/remains.php").isEmpty());
        ::kill(pid_t(batch.processId()), SIGINT);
        QTRY_COMPARE(batch.state(), QProcess::NotRunning);
        QCOMPARE(batch.exitCode(), 1);
        QVERIFY(batch.readAllStandardError().contains("Interrupted."));
        QCOMPARE(service.requests("/teko-server/cancel.php").size(), isWaiting ? 0 : 1);
        QCOMPARE(QDir(home.path()).entryList({"TEKO-*"}, QDir::Dirs), QStringList());
        QCOMPARE(filesIn(home.path() + "/Documents/TEKO/Temp"), QStringList());
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
        QCOMPARE(filesIn(m_home + "/Temp"), QStringList());
        QCOMPARE(filesIn(m_home + "/Save").filter("bass"), QStringList());
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

    const QString m_home = QDir::homePath() + "/Documents/TEKO";
    QTemporaryDir m_folder;
};

TEKO_TEST(TestBatch)
#include "tst_batch.moc"
