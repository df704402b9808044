// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/embeddedservice.h"

#include "tests/support/testmain.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace std::chrono_literals;

class TestEmbeddedService final : public TestCase
{
    Q_OBJECT

private slots:
    void parsesAnnouncements_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("url"); // empty: refused
        QTest::newRow("whole") << QByteArray(
            "{'url':'http://127.0.0.1:5/','email':'me','hash':'h'}")
                               << "http://127.0.0.1:5";
        QTest::newRow("IPv6") << QByteArray("{'url':'http://[::1]:5','email':'me','hash':'h'}")
                              << "http://[::1]:5";
        QTest::newRow("elsewhere")
            << QByteArray("{'url':'http://10.0.0.1:5','email':'me','hash':'h'}") << "";
        QTest::newRow("no url") << QByteArray("{'email':'me','hash':'h'}") << "";
        QTest::newRow("cut") << QByteArray("{'url':'http://127.0.0.1:5") << "";
        QTest::newRow("empty") << QByteArray() << "";
    }
    void parsesAnnouncements()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, url);
        line.replace('\'', '"');
        const auto announcement = parseAnnouncement(line);
        QCOMPARE(announcement.has_value(), !url.isEmpty());
        if (announcement)
            QCOMPARE(*announcement, (ServiceAnnouncement{QUrl(url), "me", "h"}));
    }

    void announcesAndEnds_data()
    {
        QTest::addColumn<QString>("manner");
        QTest::newRow("normal") << "normal";
        QTest::newRow("goes on talking") << "floods";
    }
    void announcesAndEnds()
    {
        QFETCH(QString, manner);
        make(manner);
        QSignalSpy ready(m_service.get(), &EmbeddedService::ready);
        QVERIFY(!m_service->announcement()); // not started, so there is nothing to wait for
        m_service->start();
        const auto announcement = m_service->announcement();
        QCOMPARE(announcement, (ServiceAnnouncement{QUrl("http://127.0.0.1:5"), "me", "h"}));
        QCOMPARE(ready.count(), 1);
        QTRY_VERIFY(exists("running"));
        QVERIFY(!exists("ended"));
        m_service.reset();
        QVERIFY(exists("ended"));
        QVERIFY(exists("service.log"));
    }

    void reportsFailureOnce_data()
    {
        QTest::addColumn<QString>("manner");
        QTest::addColumn<QString>("message");
        QTest::newRow("no program") << "missing"
                                    << "The local processing service cannot be started:\n\n";
        QTest::newRow("dies") << "dies"
                              << "The local processing service has ended unexpectedly.";
        QTest::newRow("dies later") << "crashes"
                                    << "The local processing service has ended unexpectedly.";
        QTest::newRow("no announcement") << "babbles"
                                         << "The local processing service gave no address.";
    }
    void reportsFailureOnce()
    {
        QFETCH(QString, manner);
        QFETCH(QString, message);
        make(manner);
        QSignalSpy failed(m_service.get(), &EmbeddedService::failed);
        m_service->start();
        QCOMPARE(failed.count(), 0);
        QTRY_COMPARE(failed.count(), 1);
        QVERIFY(failed[0][0].toString().startsWith(message));
        QVERIFY(!m_service->announcement());
        QTRY_VERIFY(manner != "babbles" || exists("ended"));
        QCoreApplication::processEvents();
        QCOMPARE(failed.count(), 1);
    }

    void waitsNoLongerThanAsked()
    {
        make("silent");
        m_service->start();
        QVERIFY(!m_service->announcement(50ms));
    }

    void cleanup()
    {
        m_service.reset();
        m_folder.reset();
    }

private:
    void make(const QString &manner)
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_data = m_folder->filePath("sub/data-" + manner);
        const QString program = manner == "missing" ? "/no/such/program" : STANDIN_SERVICE;
        m_service = std::make_unique<EmbeddedService>(program, m_data);
    }
    [[nodiscard]] bool exists(const QString &name) const
    {
        return QFile::exists(m_data + "/" + name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_data;
    std::unique_ptr<EmbeddedService> m_service;
};

TEKO_TEST_MAIN(TestEmbeddedService)

#include "tst_embeddedservice.moc"
