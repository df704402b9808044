// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceaddress.h"

#include "tests/support/testmain.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

class TestServiceAddress final : public TestCase
{
    Q_OBJECT

private slots:
    void resolves_data()
    {
        QTest::addColumn<QStringList>("environment"); // service, connectivity, website
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QString>("compiledIn");
        QTest::addColumn<QStringList>("endpoints");

        const QStringList none{"", "", ""};
        const QStringList embedded{"http://127.0.0.1:5", "http://127.0.0.1:5/generate_204",
                                   "http://127.0.0.1:5"};
        const auto ofBase = [](const QString &base) {
            return QStringList{base, base + "/generate_204", base};
        };
        QTest::newRow("nothing") << none << none << "" << embedded;
        QTest::newRow("blank") << QStringList{" ", "", ""} << none << " " << embedded;
        QTest::newRow("compiled in") << none << none << "https://c" << ofBase("https://c");
        QTest::newRow("settings before compiled in")
            << none << QStringList{"https://s", "", ""} << "https://c" << ofBase("https://s");
        QTest::newRow("environment before all")
            << QStringList{"http://e:1", "", ""} << QStringList{"https://s", "", ""} << "https://c"
            << ofBase("http://e:1");
        QTest::newRow("no scheme, slashes, query")
            << QStringList{" localhost:80/a b/?x#y", "", ""} << none << "" << none;
        QTest::newRow("no scheme") << QStringList{"localhost:80/a//", "", ""} << none << ""
                                   << ofBase("http://localhost:80/a");
        QTest::newRow("query and fragment")
            << QStringList{"https://e/?q#f", "", ""} << none << "" << ofBase("https://e");
        QTest::newRow("no web address")
            << QStringList{"file:///etc", "", ""} << none << "https://c" << none;
        QTest::newRow("each on its own")
            << QStringList{"", "https://n/ok?x=1", ""}
            << QStringList{"", "https://no", "https://w/"} << "https://c"
            << QStringList{"https://c", "https://n/ok?x=1", "https://w"};
    }
    void resolves()
    {
        QFETCH(QStringList, environment);
        QFETCH(QStringList, settings);
        QFETCH(QString, compiledIn);
        QFETCH(QStringList, endpoints);

        QProcessEnvironment variables;
        variables.insert("TEKO_SERVICE_URL", environment[0]);
        variables.insert("TEKO_CONNECTIVITY_URL", environment[1]);
        variables.insert("TEKO_WEBSITE_URL", environment[2]);
        const QTemporaryDir folder;
        ProgramData store(folder.filePath("teko.ini"));
        store.settings().setValue("service_url", settings[0]);
        store.settings().setValue("connectivity_url", settings[1]);
        store.settings().setValue("website_url", settings[2]);

        const auto first = ConfiguredAddresses::from(variables);
        const auto second = ConfiguredAddresses::from(store);
        const ServiceEndpoints resolved =
            resolveEndpoints(first, second, compiledIn, QUrl("http://127.0.0.1:5/"));
        QCOMPARE(QStringList({resolved.base.toString(), resolved.connectivity.toString(),
                              resolved.website.toString()}),
                 endpoints);
        QCOMPARE(wantsEmbeddedService(first, second, compiledIn),
                 endpoints[0].contains("127.0.0.1"));
    }

    void nothingWithoutEmbeddedService()
    {
        QCOMPARE(resolveEndpoints({}, {}, {}, {}), ServiceEndpoints());
    }
};

TEKO_TEST_MAIN(TestServiceAddress)

#include "tst_serviceaddress.moc"
