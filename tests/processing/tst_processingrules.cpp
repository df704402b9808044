// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingrules.h"
#include "results/resultnames.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

class TestProcessingRules : public TestCase
{
    Q_OBJECT

private slots:
    void resultNames_data()
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

    void resultNames()
    {
        const auto [source, taken, main, mix] = fetchRow<QString, QStringList, QString, QString>();
        const ResultPaths paths =
            freeResultPaths({"D", "vocals", source, "mp3"},
                            [&taken = taken](const QString &path) { return taken.contains(path); });
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
};

TEKO_TEST_MAIN(TestProcessingRules)
#include "tst_processingrules.moc"
