// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "processing/processingrules.h"
#include "service/resultnames.h"
#include "service/resultopener.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

class TestProcessingRules : public TestCase
{
    Q_OBJECT

private slots:
    void resultNames_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("main");
        QTest::addColumn<QString>("mix");
        const auto row = [](const char *name, const QString &source, const QStringList &taken,
                            const QString &main, const QString &mix) {
            QTest::newRow(name) << source << taken << main << mix;
        };
        row("free", "Song.final", {}, "D/vocals - Song.final.mp3",
            "D/Mix Without vocals - Song.final.mp3");
        row("main taken", "Song", {"D/vocals - Song.mp3"}, "D/vocals - Song (1).mp3",
            "D/Mix Without vocals - Song (1).mp3");
        row("mix and first number taken", "Song",
            {"D/Mix Without vocals - Song.mp3", "D/Mix Without vocals - Song (1).mp3"},
            "D/vocals - Song (2).mp3", "D/Mix Without vocals - Song (2).mp3");
        row("only a download target taken", "S", {"D/vocals - S.mp3.wav"}, "D/vocals - S.mp3",
            "D/Mix Without vocals - S.mp3");
        row("placeholders in the name", "%1 %5 %%20 <b>", {"D/vocals - %1 %5 %%20 <b>.mp3"},
            "D/vocals - %1 %5 %%20 <b> (1).mp3", "D/Mix Without vocals - %1 %5 %%20 <b> (1).mp3");
    }

    void resultNames()
    {
        QFETCH(QString, source);
        QFETCH(QStringList, taken);
        QFETCH(QString, main);
        QFETCH(QString, mix);
        const ResultPaths paths =
            freeResultPaths({"D", "vocals", source, "mp3"},
                            [&](const QString &path) { return taken.contains(path); });
        QCOMPARE(paths.main, main);
        QCOMPARE(paths.mix, mix);
        QCOMPARE(downloadTarget(paths.main), main + ".wav");
    }

    void longNamesStillFitAFileSystem()
    {
        const QTemporaryDir folder;
        for (const QString &source :
             {QString(250, 'x'), QString(62, QChar(0x00fc)) + QString(63, 'y') + "🎸🎸🎸🎸🎸🎸🎸🎸"}) {
            ResultName name{folder.path(), "vocals", source, "webm"};
            for (int run = 0; run < 2; ++run) {
                const ResultPaths paths =
                    freeResultPaths(name, [](const QString &p) { return QFile::exists(p); });
                for (const QString &path : {paths.main, paths.mix}) {
                    QVERIFY(QFile(downloadTarget(path) + ".ABCDEF").open(QIODevice::WriteOnly));
                    QVERIFY(QFile(path).open(QIODevice::WriteOnly | QIODevice::NewOnly));
                    QVERIFY(!QFileInfo(path).fileName().contains(QChar::ReplacementCharacter));
                }
            }
        }
    }

    void temporaryNames()
    {
        QSet<QString> names;
        for (int i = 0; i < 200; ++i)
            names << temporaryWavPath("T", *QRandomGenerator64::global());
        QCOMPARE(names.size(), 200);
        static const QRegularExpression form("^T/[A-Za-z0-9]{16}\\.wav$");
        for (const QString &name : names)
            QVERIFY2(form.match(name).hasMatch(), qPrintable(name));
    }

    void storedChoicesThatAreNotOfferedAreNone()
    {
        QCOMPARE(offeredInstrument("Vocals"), "vocals");
        QCOMPARE(offeredInstrument("Harp"), "none");
        QCOMPARE(offeredFormat("MKV", true), "MKV");
        QCOMPARE(offeredFormat("MKV", false), "none");
        QCOMPARE(offeredFormat("WMA", false), "WMA");
        QCOMPARE(offeredFormat("OGG", true), "none");
    }

    void foldersAreTriedBeforeARun()
    {
        const QTemporaryDir good;
        QCOMPARE(unusableFolder(good.path(), good.path()), QString());
        for (const QString &bad : {QString(), good.filePath("missing"), QStringLiteral("/proc")}) {
            QVERIFY(unusableFolder(bad, good.path()).contains("saved files"));
            QVERIFY(unusableFolder(good.path(), bad).contains("temporary files"));
        }
        QCOMPARE(QDir(good.path()).entryList(QDir::Files), QStringList());
    }

    void licence_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("expired");
        QTest::addColumn<QString>("mode");
        QTest::newRow("paid") << 7 << 0 << "full";
        QTest::newRow("expired") << 7 << 1 << "demo";
        QTest::newRow("none") << 0 << 0 << "demo";
    }

    void licence()
    {
        QFETCH(int, id);
        QFETCH(int, expired);
        UserRecord user;
        user.subscription.id = id;
        user.subscription.expired = expired;
        QTEST(runMode(user), "mode");
        QVERIFY(isDailyLimitReached(0));
        QVERIFY(!isDailyLimitReached(1));
        QVERIFY(!isDailyLimitReached(-1));
        QCOMPARE(playerKey("Song Trimlet"), QStringLiteral("SongTrimlet"));
    }
};

TEKO_TEST_MAIN(TestProcessingRules)
#include "tst_processingrules.moc"
