// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/replies.h"
#include "service/serviceaddress.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

/// The decisions of the service room, on values alone.
class TestServiceRules final : public TestCase
{
    Q_OBJECT

private slots:
    void percentages()
    {
        QCOMPARE(uploadPercent(1, 3), 33.3);
        QCOMPARE(uploadPercent(99'999, 100'000), 99.9);
        QCOMPARE(uploadPercent(5, 5), 100.0);
        QCOMPARE(uploadPercent(0, 0), std::nullopt);
        // Received, announced, expected.
        QCOMPARE(downloadPercent(999, 1000, -1), 99.0);
        QCOMPARE(downloadPercent(1, 2, 100), 50.0);
        QCOMPARE(downloadPercent(25, -1, 100), 25.0);
        QCOMPARE(downloadPercent(5, 5, -1), 99.8);
        QCOMPARE(downloadPercent(7, 0, 5), 99.8);
        QCOMPARE(downloadPercent(7, 0, -1), 95.0);
        QCOMPARE(downloadPercent(0, 0, 0), 95.0);
    }

    void resultLocations()
    {
        QCOMPARE(resultUrls("a|b\r\n"), (ResultUrls{"a", "b"}));
        QCOMPARE(resultUrls("a|"), (ResultUrls{"a", ""}));
        for (const char *body : {"a", "a|b|c", ""})
            QVERIFY(!resultUrls(body));
        const QUrl asked("https://s/teko-server/download.php");
        QCOMPARE(resultUrl(asked, "../r/a.wav"), QUrl("https://s/r/a.wav"));
        QCOMPARE(resultUrl(asked, "http://s/a.wav"), QUrl());
        QCOMPARE(resultUrl(QUrl("http://s/x"), "http://t/a.wav"), QUrl("http://t/a.wav"));
    }

    void truncatesTexts_data()
    {
        const Rows<QString, QString> add;
        add("short", "<b>No</b>\nsuch job\n", "");
        add("many lines", QString("x\n").repeated(100), QString("x\n").repeated(24) + "x");
        add("one long line", QString(9000, 'x'), QString(1500, 'x'));
        add("not half a character", QString(1499, 'x') + QString("\U0001F3B5").repeated(9),
            QString(1499, 'x'));
    }

    void truncatesTexts()
    {
        const auto [text, kept] = fetchRow<QString, QString>();
        QCOMPARE(truncatedForDisplay(text),
                 kept.isEmpty() ? text : kept + "\n\n(The rest of the text is left out.)");
    }

    void addresses_data()
    {
        const Rows<QStringList, QStringList, QString, QStringList> add;
        const QStringList none{"", "", ""};
        const auto ofBase = [](const QString &base) {
            return QStringList{base, base + "/generate_204", base};
        };
        add("nothing", none, none, "", ofBase("http://127.0.0.1:5"));
        add("compiled in", {" ", "", ""}, none, "https://c", ofBase("https://c"));
        add("settings before compiled in", none, {"https://s", "", ""}, "https://c",
            ofBase("https://s"));
        add("environment before all", {"http://e:1", "", ""}, {"https://s", "", ""}, "https://c",
            ofBase("http://e:1"));
        add("no scheme", {"localhost:80/a//", "", ""}, none, "", ofBase("http://localhost:80/a"));
        add("query and fragment", {"https://e/?q#f", "", ""}, none, "", ofBase("https://e"));
        add("no web address", {"file:///etc", "", ""}, none, "https://c", none);
        add("password in it", none, {"https://me:secret@e", "", ""}, "", none);
        add("password of the check", none, {"https://s", "http://me:secret@e/ok", ""}, "",
            {"https://s", "", "https://s"});
        add("each on its own", {"", "https://n/ok?x=1", ""}, {"", "https://no", "https://w/"},
            "https://c", {"https://c", "https://n/ok?x=1", "https://w"});
    }

    void addresses()
    {
        const auto [environment, settings, compiledIn, endpoints] =
            fetchRow<QStringList, QStringList, QString, QStringList>();
        const ConfiguredAddresses first{environment[0], environment[1], environment[2]};
        const ConfiguredAddresses second{settings[0], settings[1], settings[2]};
        const ServiceEndpoints resolved =
            resolveEndpoints(first, second, compiledIn, QUrl("http://127.0.0.1:5/"));
        QCOMPARE(QStringList({resolved.base.toString(), resolved.connectivity.toString(),
                              resolved.website.toString()}),
                 endpoints);
        QCOMPARE(wantsEmbeddedService(first, second, compiledIn),
                 endpoints[0].contains("127.0.0.1"));
        const QString problem = addressProblem(first, second, compiledIn);
        QCOMPARE(problem.isEmpty(), !endpoints.contains(""));
        QVERIFY(!problem.contains("secret"));
    }
};

TEKO_TEST(TestServiceRules)
#include "tst_servicerules.moc"
