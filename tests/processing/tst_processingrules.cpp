// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingrules.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>

class TestProcessingRules : public TestCase
{
    Q_OBJECT

private slots:
    void temporaryNames()
    {
        const QString name = temporaryWavPath("T", *QRandomGenerator64::global());
        static const QRegularExpression form("^T/[A-Za-z0-9]{16}\\.wav$");
        QVERIFY2(form.match(name).hasMatch(), qPrintable(name));
        QVERIFY(name != temporaryWavPath("T", *QRandomGenerator64::global()));
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

    void folders_data()
    {
        const Rows<QString, QString, QString> add;
        add("both", "save", "temp", "");
        add("no save folder", "", "temp", "*saved files*settings.");
        add("save folder is a file", "file", "temp", "*saved files*settings.");
        add("save folder gone", "gone", "temp", "*saved files*settings.");
        add("no temporary folder", "save", "", "*temporary files*");
    }

    void folders()
    {
        const auto [save, temp, problem] = fetchRow<QString, QString, QString>();
        const QTemporaryDir home;
        for (const char *name : {"save", "temp"})
            QVERIFY(QDir(home.path()).mkdir(name));
        QVERIFY(QFile(home.filePath("file")).open(QIODevice::WriteOnly));
        const auto path = [&](const QString &name) {
            return name.isEmpty() ? name : home.filePath(name);
        };
        const QString found = unusableFolder(path(save), path(temp));
        QVERIFY2(isLike(found, problem), qPrintable(found));
    }
};

TEKO_TEST(TestProcessingRules)
#include "tst_processingrules.moc"
