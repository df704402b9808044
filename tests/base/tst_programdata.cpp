// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/appfolder.h"
#include "base/guiscale.h"
#include "base/programdata.h"
#include "base/savesettings.h"
#include "base/temporaryfolder.h"
#include "tests/support/files.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>

#include <cmath>
#include <memory>
#include <optional>

/// Settings, folders and what several running programs share of them.
class TestProgramData : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        QDir(documentsAppFolder()).removeRecursively();
        QDir(localDataAppFolder()).removeRecursively();
        m_folder = std::make_unique<QTemporaryDir>();
    }

    /// By the getters: what is not stored has a default, which may be a folder that is made.
    void defaultsAndStoredValues()
    {
        ProgramData store(path("teko.ini"));
        QDir().mkpath(localDataAppFolder());
        QCOMPARE(store.appFolder(), localDataAppFolder());
        QDir().mkpath(documentsAppFolder());
        const QString base = documentsAppFolder();
        QCOMPARE(store.appFolder(), base);
        using Getter = QString (ProgramData::*)() const;
        for (const auto &[getter, key, byDefault, stored] :
             QList<std::tuple<Getter, QString, QString, QString>>{
                 {&ProgramData::defaultVideoPlayer, "video_player", "Default Video Player", "v"},
                 {&ProgramData::defaultAudioPlayer, "audio_player", "Default Audio Player", "a"},
                 {&ProgramData::defaultVideoFormat, "video_format", "none", "MKV"},
                 {&ProgramData::defaultAudioFormat, "audio_format", "none", "MP3"},
                 {&ProgramData::defaultInstrument, "instrument", "none", "Bass"},
                 {&ProgramData::defaultPathSave, "path_save", base + "/Save", path("s")},
                 {&ProgramData::defaultPathOpen, "path_open", base + "/Audio", path("o")},
                 {&ProgramData::defaultPathLogs, "path_logs", base + "/Logs", path("l")},
                 {&ProgramData::defaultPathTemp, "path_temp", base + "/Temp", path("t")}}) {
            QCOMPARE((store.*getter)(), byDefault);
            store.settings().setValue("default_" + key, stored);
            QCOMPARE((store.*getter)(), stored);
            QVERIFY(!key.startsWith("path") || QFileInfo(stored).isDir());
        }
        store.settings().setValue("default_path_save", path("missing/one"));
        QCOMPARE(store.defaultPathSave(), QString());
        QCOMPARE(store.guiScale(), 1.0);
        store.settings().setValue("settings_gui_scale", "wide");
        QCOMPARE(store.guiScale(), 0.0);
        for (const auto &[scale, usable] :
             QList<std::pair<double, double>>{{0.6, 0.6}, {0.1, 0.6}, {50, 1.5}, {NAN, 1}, {0, 1}})
            QCOMPARE(usableGuiScale(scale), usable);
    }

    /// The application folder may be on a drive that goes away.
    void noFoldersOutsideTheApplicationFolder()
    {
        const ProgramData store(path("teko.ini"));
        QCOMPARE(store.defaultPathTemp(), QString());
        QVERIFY(!QFile::exists("/Temp"));
    }

    void appFolderChoice_data()
    {
        const Rows<bool, QString, QString, int> add;
        add("first choice", false, "b", "file/a", 0);
        add("second made", true, "b", "b", 0);
        add("second there already", true, "there", "file/a", -118);
        add("neither", true, "file/b", "", -104);
    }

    void appFolderChoice()
    {
        const auto [firstBlocked, second, folder, exitCode] =
            fetchRow<bool, QString, QString, int>();
        QDir(path()).mkdir("there");
        if (firstBlocked)
            writeFile(path("file"));
        const AppFolderOutcome made = makeAppFolder(path("file/a"), path(second));
        QCOMPARE(made.exitCode, exitCode);
        QCOMPARE(made.folder, folder.isEmpty() ? folder : path(folder));
        if (exitCode == -118)
            QCOMPARE(made.error,
                     "Couldn't create application documents folder: '" + made.folder + '\'');
        if (exitCode != 0)
            return;
        QCOMPARE(QDir(made.folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({"Audio", "Logs", "Save", "Temp"}));
        // The next start finds everything there.
        QCOMPARE(makeAppFolder(made.folder, QString()), made);
    }

    void damagedFilesAreKept()
    {
        const auto start = [&](const QByteArray &content, bool isNew) {
            writeFile(path("teko.ini"), content);
            if (isNew)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a copy is kept"));
            ProgramData store(path("teko.ini"));
            store.settings().setValue("default_instrument", "Bass");
            QVERIFY(store.saveSettings());
            QVERIFY(!readFile(path("teko.ini")).contains("notes"));
        };
        start("[General]\nmy notes\n", true);
        start("[General]\nother notes\n", true);
        start("[General]\nmy notes\n", false);
        start("[General]\ndefault_audio_format=MP3\n; a comment\n", false);
        QCOMPARE(filesIn(path()),
                 QStringList({"teko.ini", "teko.ini.damaged", "teko.ini.damaged-2"}));
        QCOMPARE(readFile(path("teko.ini.damaged")), "[General]\nmy notes\n");
    }

    void failedSaves_data()
    {
        addNames({"there is a folder of that name", "the disk is full", "the first session"});
    }

    /// Shown each time; the values are as before, but for a first session.
    void failedSaves()
    {
        QFETCH(QString, name);
        RecordedMessages messages;
        std::optional<SmallDisk> disk;
        QString file = path("teko.ini");
        if (name == "the disk is full") {
            disk.emplace(path("disk"));
            if (!disk->isMounted())
                QSKIP("Mounting a small disk takes the rights of an administrator.");
            file = path("disk/teko.ini");
        } else if (name == "the first session") {
            file = "/teko-test.ini";
        }
        ProgramData store(file);
        if (disk) {
            QVERIFY(saveOrShowError(store, {{"old", QString(200, 'x')}}));
            writeFile(path("disk/filler"), QByteArray(1'048'576 - 2 * 4096, 'x'));
            writeFile(path("disk/filler2"), QByteArray(4096, 'x'));
        }
        const QByteArray before = readFile(file);
        QVERIFY(QDir().mkpath(path("teko.ini/full")));
        // An administrator can write anywhere.
        if (name == "the first session" && QFileInfo("/").isWritable())
            QSKIP("The root folder can be written to.");
        for (int time = 0; time < 2; ++time) {
            QVERIFY(!saveOrShowError(store, {{"new", "value"}, {"old", {}}}));
            QVERIFY(messages.take().join("").startsWith("Option Settings: The settings could not"));
        }
        QCOMPARE(store.stringValue("new"), store.isFirstSession() ? "value" : "");
        QCOMPARE(store.stringValue("old").size(), disk ? 200 : 0);
        QCOMPARE(readFile(file), before);
    }

    /// Whoever ends first leaves the files of those that still run; the last one clears.
    void temporaryFolder()
    {
        TemporaryFolder mine(path());
        writeFile(path("a.wav"));
        QVERIFY(QDir(path()).mkdir("kept"));
        {
            TemporaryFolder other(path());
            mine.clear();
            QVERIFY(filesIn(path()).contains("a.wav"));
        }
        mine.clear();
        // A program that has crashed leaves its lock: nobody has this process number.
        writeFile(path(".teko-1.lock"), "99999999\nteko\n\n");
        writeFile(path("a.wav"));
        const TemporaryFolder next(path());
        QCOMPARE(filesIn(path()).size(), 1);
        QVERIFY(QDir(path("kept")).exists());
        TemporaryFolder("").clear();
    }

private:
    [[nodiscard]] QString path(const QString &name = {}) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

TEKO_TEST(TestProgramData)
#include "tst_programdata.moc"
