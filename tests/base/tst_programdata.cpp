// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/mediafilter.h"
#include "app/webpage.h"
#include "base/appfolder.h"
#include "base/programdata.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <set>
#include <tuple>
#include <vector>

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
        QCOMPARE(seen.front()->settings().fileName(), "/teko.ini");
    }

    /// By the getters: what is not stored has a default, which may be a folder that is made.
    void defaultsAndStoredValues()
    {
        const QTemporaryDir home;
        ProgramData store(home.filePath("teko.ini"));
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
                 {&ProgramData::defaultPathSave, "path_save", base + "/Save", home.path() + "/s"},
                 {&ProgramData::defaultPathOpen, "path_open", base + "/Audio", home.path() + "/o"},
                 {&ProgramData::defaultPathLogs, "path_logs", base + "/Logs", home.path() + "/l"},
                 {&ProgramData::defaultPathTemp, "path_temp", base + "/Temp",
                  home.path() + "/t"}}) {
            QCOMPARE((store.*getter)(), byDefault);
            store.settings().setValue("default_" + key, stored);
            QCOMPARE((store.*getter)(), stored);
            QVERIFY(!key.startsWith("path") || QFileInfo(stored).isDir());
        }
        store.settings().setValue("default_path_save", home.filePath("missing/one"));
        QCOMPARE(store.defaultPathSave(), QString());
        QCOMPARE(store.guiScale(), 1.0);
        store.settings().setValue("settings_gui_scale", "1.25");
        QCOMPARE(store.guiScale(), 1.25);
        store.settings().setValue("settings_gui_scale", "wide");
        QCOMPARE(store.guiScale(), 0.0);
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
        const QTemporaryDir home;
        QDir(home.path()).mkdir("there");
        if (firstBlocked)
            QVERIFY(QFile(home.filePath("file")).open(QIODevice::WriteOnly));
        const AppFolderOutcome made = makeAppFolder(home.filePath("file/a"), home.filePath(second));
        QCOMPARE(made.exitCode, exitCode);
        QCOMPARE(made.folder, folder.isEmpty() ? folder : home.filePath(folder));
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

    void fileDialogFilter()
    {
        const QString audio = "*.aac *.aif *.aiff *.m4a *.mp1 *.mp3 *.mp4 *.ogg *.wav *.wma *.flac";
        const QString video = "*.avi *.flv *.m4v *.mov *.mp4 *.mpg *.rm *.vob *.webm *.wmv *.mkv";
        QCOMPARE(mediaFileFilter(),
                 QString("All Openable Files (%1 %2);;\nAudio Files (%1);;\nVideo Files (%2)")
                     .arg(audio, video));
    }

    void webPages()
    {
        const ServiceEndpoints ends{QUrl("http://s:1"), QUrl(), QUrl("http://site")};
        for (const auto &[name, page] : {std::pair("/helpdesk.html", "http://site/helpdesk.html"),
                                         {"/teko.html", "http://site/teko.html"},
                                         {"/", "http://site/"},
                                         {"/teko-server/x.php", "http://s:1/teko-server/x.php"},
                                         {"https://else/a b", "https://else/a b"}})
            QCOMPARE(webPage(name, ends), QUrl(page));
    }
};

TEKO_TEST_MAIN(TestProgramData)
#include "tst_programdata.moc"
