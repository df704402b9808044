// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/replies.h"

#include "tests/support/testmain.h"

#include <QTest>

class TestReplies final : public TestCase
{
    Q_OBJECT

private slots:
    void uploadPercents_data()
    {
        QTest::addColumn<qint64>("sent");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<double>("percent"); // -1: none
        QTest::newRow("rounds down") << qint64(1) << qint64(3) << 33.3;
        QTest::newRow("never early") << qint64(99'999) << qint64(100'000) << 99.9;
        QTest::newRow("whole") << qint64(5) << qint64(5) << 100.0;
        QTest::newRow("beyond 32 bits") << qint64(3'000'000'000) << qint64(6'000'000'000) << 50.0;
        QTest::newRow("no total") << qint64(0) << qint64(0) << -1.0;
        QTest::newRow("unknown total") << qint64(1) << qint64(-1) << -1.0;
    }
    void uploadPercents()
    {
        QFETCH(qint64, sent);
        QFETCH(qint64, total);
        QFETCH(double, percent);
        QCOMPARE(uploadPercent(sent, total).value_or(-1), percent);
    }

    void downloadPercents_data()
    {
        QTest::addColumn<qint64>("received");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("expected");
        QTest::addColumn<double>("percent");
        QTest::newRow("truncates") << qint64(999) << qint64(1000) << qint64(-1) << 99.0;
        QTest::newRow("total before expected") << qint64(1) << qint64(2) << qint64(100) << 50.0;
        QTest::newRow("expected only") << qint64(25) << qint64(-1) << qint64(100) << 25.0;
        QTest::newRow("all of it") << qint64(5) << qint64(5) << qint64(-1) << 99.8;
        QTest::newRow("more than expected") << qint64(7) << qint64(0) << qint64(5) << 99.8;
        QTest::newRow("nothing known") << qint64(7) << qint64(0) << qint64(-1) << 95.0;
        QTest::newRow("nothing expected") << qint64(0) << qint64(0) << qint64(0) << 95.0;
    }
    void downloadPercents()
    {
        QFETCH(qint64, received);
        QFETCH(qint64, total);
        QFETCH(qint64, expected);
        QFETCH(double, percent);
        QCOMPARE(downloadPercent(received, total, expected), percent);
    }

    void readsResultUrls_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("parts"); // "none" for a refusal
        QTest::newRow("two") << "a|b"
                             << "a,b";
        QTest::newRow("second empty") << "a|"
                                      << "a,";
        QTest::newRow("line end") << "a|b\r\n"
                                  << "a,b";
        QTest::newRow("one") << "a"
                             << "none";
        QTest::newRow("three") << "a|b|"
                               << "none";
        QTest::newRow("empty") << ""
                               << "none";
    }
    void readsResultUrls()
    {
        QFETCH(QString, body);
        QFETCH(QString, parts);
        const auto urls = resultUrls(body);
        QCOMPARE(urls ? urls->first + "," + urls->second : "none", parts);
    }

    void shortensTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kept"); // empty: unchanged
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("sentence") << "<b>No</b>\nsuch job\n"
                                  << "";
        QTest::newRow("many lines")
            << QString("x\n").repeated(100) << QString("x\n").repeated(24) + "x";
        QTest::newRow("one long line") << QString(9000, 'x') << QString(1500, 'x');
        QTest::newRow("not half a character")
            << QString(1499, 'x') + QString::fromUtf8("\U0001F3B5").repeated(9)
            << QString(1499, 'x');
    }
    void shortensTexts()
    {
        QFETCH(QString, text);
        QFETCH(QString, kept);
        const QString shown =
            kept.isEmpty() ? text : kept + "\n\n(The rest of the text is left out.)";
        QCOMPARE(shownText(text), shown);
    }
};

TEKO_TEST_MAIN(TestReplies)

#include "tst_replies.moc"
