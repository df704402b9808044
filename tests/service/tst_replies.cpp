// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/replies.h"

#include "tests/support/rows.h"
#include "tests/support/testmain.h"

class TestReplies final : public TestCase
{
    Q_OBJECT

private slots:

    void uploadPercents()
    {
        for (const auto &[sent, total, percent] :
             QList<std::tuple<qint64, qint64, double>>{{1, 3, 33.3},
                                                       {99'999, 100'000, 99.9},
                                                       {5, 5, 100.0},
                                                       {3'000'000'000, 6'000'000'000, 50.0}})
            QCOMPARE(uploadPercent(sent, total), percent);
        QCOMPARE(uploadPercent(0, 0), std::nullopt);
        QCOMPARE(uploadPercent(1, -1), std::nullopt);
    }

    void downloadPercents_data()
    {
        const Rows<qint64, qint64, qint64, double> add;
        add("truncates", 999, 1000, -1, 99.0);
        add("total before expected", 1, 2, 100, 50.0);
        add("expected only", 25, -1, 100, 25.0);
        add("all of it", 5, 5, -1, 99.8);
        add("more than expected", 7, 0, 5, 99.8);
        add("nothing known", 7, 0, -1, 95.0);
        add("nothing expected", 0, 0, 0, 95.0);
    }

    void downloadPercents()
    {
        const auto [received, total, expected, percent] =
            fetchRow<qint64, qint64, qint64, double>();
        QCOMPARE(downloadPercent(received, total, expected), percent);
    }

    void readsResultUrls()
    {
        for (const auto &[body, second] : {std::pair("a|b", "b"), {"a|", ""}, {"a|b\r\n", "b"}}) {
            QCOMPARE(resultUrls(body).value().first, "a");
            QCOMPARE(resultUrls(body).value().second, second);
        }
        for (const char *body : {"a", "a|b|", ""})
            QVERIFY(!resultUrls(body));
    }

    void shortensTexts_data()
    {
        const Rows<QString, QString> add;
        add("empty", "", "");
        add("sentence", "<b>No</b>\nsuch job\n", "");
        add("many lines", QString("x\n").repeated(100), QString("x\n").repeated(24) + "x");
        add("one long line", QString(9000, 'x'), QString(1500, 'x'));
        add("not half a character", QString(1499, 'x') + QString("\U0001F3B5").repeated(9),
            QString(1499, 'x'));
    }

    void shortensTexts()
    {
        const auto [text, kept] = fetchRow<QString, QString>();
        const QString shown =
            kept.isEmpty() ? text : kept + "\n\n(The rest of the text is left out.)";
        QCOMPARE(shownText(text), shown);
    }
};

TEKO_TEST_MAIN(TestReplies)
#include "tst_replies.moc"
