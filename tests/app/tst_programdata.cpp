// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/appfolder.h"
#include "app/base/programdata.h"
#include "app/mediafilter.h"
#include "app/webpage.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <set>
#include <vector>

Q_DECLARE_METATYPE(AppFolderOutcome)

class TestProgramData : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        QDir(documentsAppFolder()).removeRecursively();
        QDir(localDataAppFolder()).removeRecursively();
    }

    void racingThreadsGetOneStore()
    {
        std::vector<std::unique_ptr<QThread>> threads;
        std::vector<ProgramData *> seen(8);
        for (auto &slot : seen) {
            threads.emplace_back(QThread::create([&slot] { slot = &ProgramData::instance(); }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            thread->wait();
        QCOMPARE(std::set<ProgramData *>(seen.begin(), seen.end()).size(), size_t(1));
        // There is no application folder yet, as on a very first run.
        QCOMPARE(seen.front()->settings().fileName(), QStringLiteral("/teko.ini"));
    }

    void defaultsAndStoredValues()
    {
        const QTemporaryDir home;
        ProgramData store(home.filePath(QStringLiteral("teko.ini")));
        QDir().mkpath(localDataAppFolder());
        QCOMPARE(store.appFolder(), localDataAppFolder());
        QDir().mkpath(documentsAppFolder());
        const QString base = documentsAppFolder();
        QCOMPARE(store.appFolder(), base);
        const auto values = [&] {
            return QStringList{store.defaultVideoPlayer(), store.defaultAudioPlayer(),
                               store.defaultVideoFormat(), store.defaultAudioFormat(),
                               store.defaultInstrument(),  store.defaultPathSave(),
                               store.defaultPathOpen(),    store.defaultPathLogs(),
                               store.defaultPathTemp(),    QString::number(store.guiScale())};
        };
        QCOMPARE(
            values(),
            QStringList({"Default Video Player", "Default Audio Player", "none", "none", "none",
                         base + "/Save", base + "/Audio", base + "/Logs", base + "/Temp", "1"}));

        const QStringList keys{"default_video_player", "default_audio_player",
                               "default_video_format", "default_audio_format",
                               "default_instrument",   "default_path_save",
                               "default_path_open",    "default_path_logs",
                               "default_path_temp",    "settings_gui_scale"};
        QStringList stored{"v", "a", "MKV", "MP3", "Bass"};
        for (const char *name : {"s", "o", "l", "t"})
            stored << home.filePath(QLatin1String(name));
        stored << "1.25";
        for (qsizetype i = 0; i < keys.size(); ++i)
            store.settings().setValue(keys.at(i), stored.at(i));
        QCOMPARE(values(), stored);
        QVERIFY(QFileInfo(home.filePath("t")).isDir());
        QCOMPARE(store.stringValue("default_instrument"), QStringLiteral("Bass"));

        store.settings().setValue("settings_gui_scale", "wide");
        store.settings().setValue("default_path_save", home.filePath("missing/one"));
        QCOMPARE(store.guiScale(), 0.0);
        QCOMPARE(store.defaultPathSave(), QString());
        store.settings().remove("settings_gui_scale");
        QCOMPARE(store.guiScale(), 1.0);
    }

    void userIsReadFromTheServicesMap()
    {
        const QVariantMap plan{{"id", 7}, {"period", "year"}, {"expired", "1"}};
        const UserRecord user = UserRecord::fromMap(
            {{"user_id", 3}, {"name", "Ada"}, {"hash", "h"}, {"subscription", plan}});
        QCOMPARE(user, (UserRecord{3, "Ada", {}, "h", {7, {}, "year", {}, {}, 1}}));
        QCOMPARE(UserRecord::fromMap({{"user_id", "x"}, {"subscription", "none"}}), UserRecord());
    }

    void appFolderChoice_data()
    {
        QTest::addColumn<bool>("firstBlocked");
        QTest::addColumn<QString>("second");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("first choice") << false << "b"
                                      << "file/a" << 0;
        QTest::newRow("second made") << true << "b"
                                     << "b" << 0;
        QTest::newRow("second there already") << true << "there"
                                              << "file/a" << -118;
        QTest::newRow("neither") << true << "file/b"
                                 << "" << -104;
    }

    void appFolderChoice()
    {
        QFETCH(bool, firstBlocked);
        QFETCH(QString, second);
        QFETCH(QString, folder);
        QFETCH(int, exitCode);
        const QTemporaryDir home;
        QDir(home.path()).mkdir("there");
        if (firstBlocked)
            QVERIFY(QFile(home.filePath("file")).open(QIODevice::WriteOnly));
        const AppFolderOutcome made = makeAppFolder(home.filePath("file/a"), home.filePath(second));
        QCOMPARE(made.exitCode, exitCode);
        QCOMPARE(made.folder, folder.isEmpty() ? folder : home.filePath(folder));
        if (exitCode == -118) {
            QCOMPARE(made.error,
                     QStringLiteral("Couldn't create application documents folder: '%1'")
                         .arg(made.folder));
        }
        if (exitCode != 0)
            return;
        QCOMPARE(QDir(made.folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({"Audio", "Logs", "Save", "Temp"}));
        // The next start finds everything there.
        QCOMPARE(makeAppFolder(made.folder, QString()), made);
    }

    void fileDialogFilter()
    {
        QCOMPARE(
            mediaFileFilter(),
            QStringLiteral(
                "All Openable Files (*.aac *.aif *.aiff *.m4a *.mp1 *.mp3 *.mp4 *.ogg *.wav *.wma "
                "*.flac *.avi *.flv *.m4v *.mov *.mp4 *.mpg *.rm *.vob *.webm *.wmv *.mkv);;\n"
                "Audio Files (*.aac *.aif *.aiff *.m4a *.mp1 *.mp3 *.mp4 *.ogg *.wav *.wma "
                "*.flac);;\n"
                "Video Files (*.avi *.flv *.m4v *.mov *.mp4 *.mpg *.rm *.vob *.webm *.wmv *.mkv)"));
    }

    void webPages_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("page");
        QTest::newRow("site") << "/helpdesk.html"
                              << "http://site/helpdesk.html";
        QTest::newRow("home") << "/"
                              << "http://site/";
        QTest::newRow("service") << "/teko-server/x.php"
                                 << "http://s:1/teko-server/x.php";
        QTest::newRow("whole") << "https://else/where"
                               << "https://else/where";
    }

    void webPages()
    {
        QFETCH(QString, name);
        QFETCH(QString, page);
        const ServiceEndpoints ends{QUrl("http://s:1"), QUrl(), QUrl("http://site")};
        QCOMPARE(webPage(name, ends), QUrl(page));
    }
};

TEKO_TEST_MAIN(TestProgramData)
#include "tst_programdata.moc"
