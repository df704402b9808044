// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultmemory.h"
#include "results/resultopener.h"
#include "tests/support/installation.h"
#include "tests/support/openedurls.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

class TestResults : public TestCase
{
    Q_OBJECT

private slots:
    void names_data()
    {
        const Rows<QString, QStringList, QString, QString> add;
        add("free", "Song.final", {}, "D/vocals - Song.final.mp3",
            "D/Mix Without vocals - Song.final.mp3");
        add("main taken", "Song", {"D/vocals - Song.mp3"}, "D/vocals - Song (1).mp3",
            "D/Mix Without vocals - Song (1).mp3");
        add("mix and first number taken", "Song",
            {"D/Mix Without vocals - Song.mp3", "D/Mix Without vocals - Song (1).mp3"},
            "D/vocals - Song (2).mp3", "D/Mix Without vocals - Song (2).mp3");
        add("only a download target taken", "S", {"D/vocals - S.mp3.wav"}, "D/vocals - S.mp3",
            "D/Mix Without vocals - S.mp3");
        add("placeholders in the name", "%1 %5 %%20 <b>", {"D/vocals - %1 %5 %%20 <b>.mp3"},
            "D/vocals - %1 %5 %%20 <b> (1).mp3", "D/Mix Without vocals - %1 %5 %%20 <b> (1).mp3");
    }

    void names()
    {
        const auto [source, taken, main, mix] = fetchRow<QString, QStringList, QString, QString>();
        const ResultPaths paths =
            freeResultPaths({"D", "vocals", source, "mp3"},
                            [&taken = taken](const QString &path) { return taken.contains(path); });
        QCOMPARE(paths, (ResultPaths{main, mix}));
    }

    void longNamesStillFitAFileSystem()
    {
        const Installation home;
        for (const QString &source :
             {QString(250, 'x'), QString(62, QChar(0x00fc)) + QString(63, 'y') + "🎸🎸🎸🎸🎸🎸🎸🎸"}) {
            for (int run = 0; run < 2; ++run) {
                const ResultPaths paths =
                    freeResultPaths({home.path("Save"), "vocals", source, "webm"},
                                    [](const QString &path) { return QFile::exists(path); });
                for (const QString &path : {paths.main, paths.mix}) {
                    QVERIFY(QFile(downloadTarget(path) + ".ABCDEF").open(QIODevice::WriteOnly));
                    QVERIFY(QFile(path).open(QIODevice::WriteOnly | QIODevice::NewOnly));
                    QVERIFY(!path.contains(QChar::ReplacementCharacter));
                }
            }
        }
    }

    /// By the number of the job, for one service, from one start to the next.
    void memory()
    {
        Installation home;
        const ResultPaths paths{home.path("Save/a (1).mp3"), home.path("Save/b (1).mp3")};
        ResultMemory(*home.store).remember(7, paths);
        home.restart();
        const ResultMemory memory(*home.store);
        const QString save = home.path("Save");
        QVERIFY(QFile(paths.mix).open(QIODevice::WriteOnly));
        QCOMPARE(memory.find(7, "mp3", save), paths);
        QCOMPARE(memory.find(7, "flac", save),
                 (ResultPaths{home.path("Save/a (1).flac"), home.path("Save/b (1).flac")}));
        QVERIFY(!memory.find(8, "mp3", save));
        // Another song of that name, saved in another format.
        const ResultPaths others{home.path("Save/a (1).flac"), home.path("Save/b.flac")};
        ResultMemory(*home.store).remember(9, others);
        QCOMPARE(memory.find(7, "flac", save)->main, home.path("Save/a (1) (1).flac"));
        QCOMPARE(memory.find(9, "flac", save), others);
        home.store->setLocalAccount(LocalAccount{"me", "h"});
        QVERIFY(!memory.find(7, "mp3", save));
        home.store->setLocalAccount({});
        // The user has moved the results to another folder, and saves there now.
        QVERIFY(QFile::remove(paths.mix));
        QCOMPARE(memory.find(7, "mp3", "/New"), (ResultPaths{"/New/a (1).mp3", "/New/b (1).mp3"}));
    }

    void opening_data()
    {
        const Rows<QString, QString, QString> add;
        add("instrument", "main", "a.mp3", "");
        add("any other word", "other", "a.mp3", "");
        add("mix", "mix", "b.mp3", "");
        add("folder", "folder", ".", "");
        add("missing", "mix", "", "b.mp3");
    }

    void opening()
    {
        const auto [type, opened, missing] = fetchRow<QString, QString, QString>();
        const Installation home;
        OpenedUrls urls;
        writeFile(home.path("Save/a.mp3"));
        if (missing.isEmpty())
            writeFile(home.path("Save/b.mp3"));
        const ResultPaths paths{home.path("Save/a.mp3"), home.path("Save/b.mp3")};
        QCOMPARE(openResult(*home.store, paths, type),
                 missing.isEmpty() ? QString() : home.path("Save/" + missing));
        QCOMPARE(urls.take(),
                 opened.isEmpty() ? QStringList()
                                  : QStringList(QDir::cleanPath(home.path("Save/" + opened))));
    }

    void players_data()
    {
        const Rows<QString, QString, bool> add;
        add("video", "a.MKV", "Video Trimlet", true);
        add("video of a kind that no result has", "a.avi", "Song Trimlet", true);
        add("sound", "a.mp3", "Song Trimlet", true);
        add("player gone", "a.mp3", "Song Trimlet", false);
    }

    /// The program that the settings name for the kind of the file, or else the system's.
    void players()
    {
        const auto [name, player, isThere] = fetchRow<QString, QString, bool>();
#ifdef Q_OS_WIN
        if (isThere)
            QSKIP("The player is a Unix shell's.");
#endif
        Installation home;
        OpenedUrls urls;
        home.set("default_video_player", "Video Trimlet");
        home.set("default_audio_player", "Song Trimlet");
        const QString program =
            writeFile(home.path(player), "#!/bin/sh\ncp \"$1\" \"$0.played\"\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        home.set(playerKey(player), isThere ? program : home.path("gone"));
        const QString file = writeFile(home.path("Save/" + name), "sound");
        openInPlayer(*home.store, file);
        QTRY_COMPARE(readFile(program + ".played"), isThere ? "sound" : "no such file");
        QCOMPARE(urls.take(), isThere ? QStringList() : QStringList(file));
    }
};

TEKO_TEST(TestResults)
#include "tst_results.moc"
