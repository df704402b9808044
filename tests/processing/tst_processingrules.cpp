// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/processingrules.h"
#include "tests/support/testmain.h"

#include <QTest>

class TestProcessingRules : public TestCase
{
    Q_OBJECT

private slots:
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

TEKO_TEST(TestProcessingRules)
#include "tst_processingrules.moc"
