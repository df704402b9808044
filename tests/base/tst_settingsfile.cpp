// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/guiscale.h"
#include "base/programdata.h"
#include "tests/support/files.h"
#include "tests/support/testmain.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

/// What a second running program does: stores one value and ends, with 0 when it was saved.
int storeOne(const char *file, const char *key)
{
    ProgramData store(QFile::decodeName(file));
    store.settings().setValue(QLatin1String(key), QString(400, 'x'));
    return store.saveSettings() ? 0 : 1;
}

} // namespace

class TestSettingsFile : public TestCase
{
    Q_OBJECT

private slots:
    void damagedFilesAreKept()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        const auto start = [&](const QByteArray &content, bool isNew) {
            writeFile(file, content);
            if (isNew)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a copy is kept"));
            ProgramData store(file);
            store.settings().setValue("default_instrument", "Bass");
            QVERIFY(store.saveSettings());
        };
        start("[General]\ndefault_audio_format=MP3\nmy notes\n", true);
        QCOMPARE(ProgramData(file).defaultAudioFormat(), "MP3");
        QVERIFY(!readFile(file).contains("my notes"));
        start("[General]\nother notes\n", true);
        start("[General]\nmy notes\n", true);
        start("[General]\nother notes\n", false);
        start("[General]\ndefault_audio_format=MP3\n; a comment\n", false);
        QCOMPARE(filesIn(folder.path()),
                 QStringList(
                     {"teko.ini", "teko.ini.damaged", "teko.ini.damaged-2", "teko.ini.damaged-3"}));
        QCOMPARE(readFile(file + ".damaged"),
                 QByteArray("[General]\ndefault_audio_format=MP3\nmy notes\n"));
        QCOMPARE(readFile(file + ".damaged-2"), QByteArray("[General]\nother notes\n"));
    }

    void aFileDamagedWhileTheProgramRunsIsKeptToo()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        ProgramData store(file);
        writeFile(file, "[General]\nhalf a li");
        store.settings().setValue("default_instrument", "Bass");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a copy is kept"));
        QVERIFY(store.saveSettings());
        QCOMPARE(readFile(file + ".damaged"), QByteArray("[General]\nhalf a li"));
    }

    /// As editors leave it: without a section or an end of the last line.
    void aFileWrittenByHandNeedsNoSaving()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        for (const char *content :
             {"default_audio_format=MP3", "[General]\ndefault_audio_format=MP3",
              "default_audio_format=MP3\ndefault_instrument=Bass\n"}) {
            writeFile(file, content);
            ProgramData store(file);
            store.settings().remove("settings_gui_scale");
            QVERIFY2(store.saveSettings(), content);
            QCOMPARE(readFile(file), QByteArray(content));
        }
    }

    /// And saved by the same object once the obstacle is gone.
    void failedSavesAreToldEachTime()
    {
        const QTemporaryDir folder;
        QDir(folder.path()).mkdir("folder.ini");
        writeFile(folder.filePath("file"));
        for (const auto &[path, obstacle] :
             {std::pair("folder.ini", "folder.ini"), {"file/teko.ini", "file"}}) {
            const QString file = folder.filePath(path);
            ProgramData store(file);
            store.settings().setValue("default_instrument", "Bass");
            QVERIFY(!store.saveSettings());
            QVERIFY(!store.saveSettings());
            QCOMPARE(store.defaultInstrument(), "Bass");
            QVERIFY(QDir(folder.path()).rmdir(obstacle)
                    || QFile::remove(folder.filePath(obstacle)));
            QVERIFY(store.saveSettings());
            QVERIFY(readFile(file).contains("default_instrument=Bass"));
        }
    }

    void runningProgramsKeepEachOthersKeys()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        ProgramData store(file);
        store.settings().setValue("default_instrument", "Bass");
        QVERIFY(store.saveSettings());
        std::vector<std::unique_ptr<QProcess>> others;
        for (const char *key : {"a", "b", "c", "d"}) {
            others.push_back(std::make_unique<QProcess>());
            others.back()->start(QCoreApplication::applicationFilePath(), {"--store", file, key});
        }
        store.settings().setValue("default_audio_format", "MP3");
        QVERIFY(store.saveSettings());
        for (const auto &other : others) {
            QVERIFY(other->waitForFinished());
            QCOMPARE(other->exitCode(), 0);
        }
        store.settings().sync();
        QCOMPARE(store.settings().allKeys(),
                 QStringList({"a", "b", "c", "d", "default_audio_format", "default_instrument"}));
    }

    /// A limit on the size of files cuts the write off as a full disk does.
    void aFileThatWouldBeCutOffStaysAsItWas()
    {
#ifdef Q_OS_WIN
        QSKIP("There is no such limit");
#endif
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        QByteArray before = "[General]\nlong=";
        before += QByteArray(300, 'y') + '\n';
        writeFile(file, before);
        QProcess other;
        other.start("sh",
                    {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$0\" --store \"$1\" a\"$2\"",
                     QCoreApplication::applicationFilePath(), file, QString(500, 'k')});
        QVERIFY(other.waitForFinished());
        QCOMPARE(other.exitStatus(), QProcess::NormalExit);
        QCOMPARE(other.exitCode(), 1);
        QCOMPARE(readFile(file), before);
    }

    void usableScales()
    {
        const double infinite = std::numeric_limits<double>::infinity();
        for (const auto &[stored, usable] : QList<std::pair<double, double>>{{0.6, 0.6},
                                                                             {1.5, 1.5},
                                                                             {0.1, 0.6},
                                                                             {50, 1.5},
                                                                             {infinite, 1},
                                                                             {std::nan(""), 1},
                                                                             {0, 1},
                                                                             {-3, 1}})
            QCOMPARE(usableGuiScale(stored), usable);
    }
};

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--store") == 0)
        return storeOne(argv[2], argv[3]);
    return runTest(argc, argv, [] { return new TestSettingsFile; });
}
#include "tst_settingsfile.moc"
