// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/serviceaddress.h"

#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

class TestServiceAddress final : public TestCase
{
    Q_OBJECT

private slots:
    void resolves_data()
    {
        const Rows<QStringList, QStringList, QString, QStringList> add;
        const QStringList none{"", "", ""};
        const QStringList embedded{"http://127.0.0.1:5", "http://127.0.0.1:5/generate_204",
                                   "http://127.0.0.1:5"};
        const auto ofBase = [](const QString &base) {
            return QStringList{base, base + "/generate_204", base};
        };
        add("nothing", none, none, "", embedded);
        add("blank", {" ", "", ""}, none, " ", embedded);
        add("compiled in", none, none, "https://c", ofBase("https://c"));
        add("settings before compiled in", none, {"https://s", "", ""}, "https://c",
            ofBase("https://s"));
        add("environment before all", {"http://e:1", "", ""}, {"https://s", "", ""}, "https://c",
            ofBase("http://e:1"));
        add("no scheme, slashes, query", {" localhost:80/a b/?x#y", "", ""}, none, "", none);
        add("no scheme", {"localhost:80/a//", "", ""}, none, "", ofBase("http://localhost:80/a"));
        add("query and fragment", {"https://e/?q#f", "", ""}, none, "", ofBase("https://e"));
        add("no web address", {"file:///etc", "", ""}, none, "https://c", none);
        add("each on its own", {"", "https://n/ok?x=1", ""}, {"", "https://no", "https://w/"},
            "https://c", {"https://c", "https://n/ok?x=1", "https://w"});
    }
    void resolves()
    {
        const auto [environment, settings, compiledIn, endpoints] =
            fetchRow<QStringList, QStringList, QString, QStringList>();
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
        QCOMPARE(resolveEndpoints({}, {}, {}, {}), ServiceEndpoints());
    }
};

TEKO_TEST_MAIN(TestServiceAddress)

#include "tst_serviceaddress.moc"
