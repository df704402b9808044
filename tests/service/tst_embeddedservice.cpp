// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/embeddedservice.h"

#include "service/connectivity.h"
#include "service/serviceconnection.h"
#include "tests/support/installation.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QStandardPaths>

/// The service of this computer, whose place a fake takes.
class TestEmbeddedService final : public TestCase
{
    Q_OBJECT

private slots:
    void readsAnnouncements()
    {
        const auto url = [](QByteArray line) {
            const auto announcement = parseAnnouncement(line.replace('\'', '"'));
            return announcement ? announcement->url.toString() : QString("refused");
        };
        QCOMPARE(url("{'url':'http://127.0.0.1:5/','email':'me','hash':'h'}"),
                 "http://127.0.0.1:5");
        QCOMPARE(url("{'url':'http://[::1]:5','email':'me','hash':'h'}"), "http://[::1]:5");
        for (const char *bad : {"{'url':'http://10.0.0.1:5','email':'me','hash':'h'}",
                                "{'email':'me','hash':'h'}", "{'url':'http://127.0.0.1:5", ""})
            QCOMPARE(url(bad), "refused");
    }

    void starts_data()
    {
        const Rows<int, QString> add;
        add("normal", 1, "");
        add("floods", 1, "");
        add("crashes once", 2, "");
        add("crashes", 3, "*has ended unexpectedly.*service.log");
        add("prints garbage", 1, "*did not report its address.");
    }

    /// Started again after a crash, twice at most; whoever waits for it is called once.
    void starts()
    {
        const auto [runs, message] = fetchRow<int, QString>();
        qputenv("FAKE_DO", QTest::currentDataTag());
        QTRY_VERIFY(QDir(folder()).removeRecursively());
        Installation home;
        RecordedMessages messages;
        int called = 0;
        {
            const ServiceConnection connection(*home.store);
            home.store->whenServiceStarted(this, [&] { ++called; });
            home.store->whenServiceStarted(std::make_unique<QObject>().get(), [&] { called += 9; });
            QCOMPARE(home.store->endpoints().base, QUrl());
            QTRY_COMPARE(readFile(folder() + "/service.log").count("starting"), runs);
            QTRY_COMPARE(messages.texts().size(), message.isEmpty() ? 0 : 1);
            QVERIFY(isLike(messages.texts().join(""), message));
            const QString url = message.isEmpty() ? "http://127.0.0.1:5" : "";
            QTRY_COMPARE(home.store->endpoints().base, QUrl(url));
            QTRY_COMPARE(called, 1);
            QVERIFY(offlineNotice(*home.store).text.contains("service.log"));
            QVERIFY(isPrivate(folder()));
        }
        QCOMPARE(readFile(folder() + "/service.log").count("ending"), message.isEmpty() ? 1 : 0);
        QCOMPARE(offlineNotice(*home.store).title, "No Internet Connection");
    }

private:
    /// Where the program keeps the data of its service.
    static QString folder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/service";
    }
};

TEKO_TEST(TestEmbeddedService)
#include "tst_embeddedservice.moc"
