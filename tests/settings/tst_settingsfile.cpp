// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/base/guiscale.h"
#include "app/base/programdata.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <limits>
#include <memory>
#include <vector>

namespace {

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

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
            write(file, content);
            if (isNew)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a copy is kept"));
            ProgramData store(file);
            store.settings().setValue("default_instrument", "Bass");
            QVERIFY(store.saveSettings());
        };
        start("[General]\ndefault_audio_format=MP3\nmy notes\n", true);
        QCOMPARE(ProgramData(file).defaultAudioFormat(), "MP3");
        QVERIFY(!read(file).contains("my notes"));
        start("[General]\nother notes\n", true);
        start("[General]\nmy notes\n", true);
        start("[General]\nother notes\n", false);
        start("[General]\ndefault_audio_format=MP3\n; a comment\n", false);
        const QDir left(folder.path());
        QCOMPARE(left.entryList(QDir::Files, QDir::Name),
                 QStringList(
                     {"teko.ini", "teko.ini.damaged", "teko.ini.damaged-2", "teko.ini.damaged-3"}));
        QCOMPARE(read(file + ".damaged"),
                 QByteArray("[General]\ndefault_audio_format=MP3\nmy notes\n"));
        QCOMPARE(read(file + ".damaged-2"), QByteArray("[General]\nother notes\n"));
    }

    void aFileDamagedWhileTheProgramRunsIsKeptToo()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        ProgramData store(file);
        write(file, "[General]\nhalf a li");
        store.settings().setValue("default_instrument", "Bass");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a copy is kept"));
        QVERIFY(store.saveSettings());
        QCOMPARE(read(file + ".damaged"), QByteArray("[General]\nhalf a li"));
    }

    /// As editors leave it: without a section or an end of the last line.
    void aFileWrittenByHandNeedsNoSaving()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("teko.ini");
        for (const char *content :
             {"default_audio_format=MP3", "[General]\ndefault_audio_format=MP3",
              "default_audio_format=MP3\ndefault_instrument=Bass\n"}) {
            write(file, content);
            ProgramData store(file);
            store.settings().remove("settings_gui_scale");
            QVERIFY2(store.saveSettings(), content);
            QCOMPARE(read(file), QByteArray(content));
        }
    }

    void failedSavesAreToldEachTime_data()
    {
        QTest::addColumn<QString>("file");
        const QString folder = m_folder.filePath("folder.ini");
        QDir().mkpath(folder);
        write(m_folder.filePath("file"), "x");
        QTest::newRow("a folder has its name") << folder;
        QTest::newRow("its folder is a file") << m_folder.filePath("file/teko.ini");
    }

    void failedSavesAreToldEachTime()
    {
        QFETCH(QString, file);
        ProgramData store(file);
        store.settings().setValue("default_instrument", "Bass");
        QVERIFY(!store.saveSettings());
        QVERIFY(!store.saveSettings());
        QCOMPARE(store.defaultInstrument(), "Bass");
        // Once the obstacle is gone, the same object saves what has been waiting.
        if (QFileInfo(file).isDir())
            QVERIFY(QDir().rmdir(file));
        else
            QVERIFY(QFile::remove(QFileInfo(file).path()));
        QVERIFY(store.saveSettings());
        QVERIFY(read(file).contains("default_instrument=Bass"));
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
        write(file, before);
        QProcess other;
        other.start("sh",
                    {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$0\" --store \"$1\" a\"$2\"",
                     QCoreApplication::applicationFilePath(), file, QString(500, 'k')});
        QVERIFY(other.waitForFinished());
        QCOMPARE(other.exitStatus(), QProcess::NormalExit);
        QCOMPARE(other.exitCode(), 1);
        QCOMPARE(read(file), before);
    }

    void usableScale_data()
    {
        QTest::addColumn<double>("stored");
        QTest::addColumn<double>("usable");
        QTest::newRow("smallest") << 0.6 << 0.6;
        QTest::newRow("largest") << 1.5 << 1.5;
        QTest::newRow("too small") << 0.1 << 0.6;
        QTest::newRow("too large") << 50.0 << 1.5;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 1.0;
        QTest::newRow("text") << 0.0 << 1.0;
        QTest::newRow("negative") << -3.0 << 1.0;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 1.0;
    }

    void usableScale()
    {
        QFETCH(double, stored);
        QFETCH(double, usable);
        QCOMPARE(usableGuiScale(stored), usable);
    }

private:
    const QTemporaryDir m_folder;
};

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--store") == 0)
        return storeOne(argv[2], argv[3]);
    return runTest(argc, argv, [] { return new TestSettingsFile; });
}
#include "tst_settingsfile.moc"
