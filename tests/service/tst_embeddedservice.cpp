// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/programdata.h"
#include "service/embeddedservice.h"
#include "service/serviceconnection.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>

#include <memory>

class TestEmbeddedService final : public TestCase
{
    Q_OBJECT

private slots:
    void parsesAnnouncements_data()
    {
        const Rows<QByteArray, QString> add;
        add("whole", "{'url':'http://127.0.0.1:5/','email':'me','hash':'h'}", "http://127.0.0.1:5");
        add("IPv6", "{'url':'http://[::1]:5','email':'me','hash':'h'}", "http://[::1]:5");
        add("elsewhere", "{'url':'http://10.0.0.1:5','email':'me','hash':'h'}", "");
        add("no url", "{'email':'me','hash':'h'}", "");
        add("cut", "{'url':'http://127.0.0.1:5", "");
        add("empty", "", "");
    }

    void parsesAnnouncements()
    {
        const auto [line, url] = fetchRow<QByteArray, QString>();
        const auto announcement = parseAnnouncement(QByteArray(line).replace('\'', '"'));
        QCOMPARE(announcement.has_value(), !url.isEmpty());
        if (announcement)
            QCOMPARE(*announcement, (ServiceAnnouncement{QUrl(url), "me", "h"}));
    }

    void announcesAndEnds_data() { addNames({"normal", "floods"}); }

    void announcesAndEnds()
    {
        QFETCH(QString, name);
        make(name);
        QSignalSpy ready(m_service.get(), &EmbeddedService::ready);
        m_service->start();
        QVERIFY(!m_service->announcement());
        QTRY_VERIFY(m_service->announcement());
        QCOMPARE(*m_service->announcement(),
                 (ServiceAnnouncement{QUrl("http://127.0.0.1:5"), "me", "h"}));
        QCOMPARE(ready.count(), 1);
        QTRY_VERIFY(exists("running"));
        QVERIFY(!exists("ended"));
        m_service.reset();
        QVERIFY(exists("ended"));
        QVERIFY(exists("service.log"));
        QVERIFY(!QFile::permissions(m_data).testAnyFlags(QFile::ReadOther | QFile::ReadGroup));
    }

    void reportsFailureOnce_data()
    {
        const Rows<QString, QString> add;
        add("no program", "missing", "The local processing service cannot be started:\n\n");
        add("dies", "dies", "The local processing service has ended unexpectedly.");
        add("dies later", "crashes", "The local processing service has ended unexpectedly.");
        add("no announcement", "babbles", "The local processing service gave no address.");
    }

    void reportsFailureOnce()
    {
        const auto [manner, message] = fetchRow<QString, QString>();
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

    void startIsAwaitedOnce_data()
    {
        const Rows<QString, int, int> add;
        add("normal", "normal", 1, 0);
        add("dies", "dies", 1, 1);
        add("dies later", "crashes", 1, 1);
        add("never answers", "silent", 0, 0);
    }

    /// Nobody is kept waiting, and nobody who asked is called twice or after his end.

    void startIsAwaitedOnce()
    {
        const auto [manner, calls, told] = fetchRow<QString, int, int>();
        make(manner);
        RecordedMessages messages;
        ProgramData store(m_folder->filePath("teko.ini"));
        const ServiceConnection connection(store);
        int called = 0;
        store.whenServiceStarted(this, [&] { ++called; });
        store.whenServiceStarted(std::make_unique<QObject>().get(), [&] { called += 10; });
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(store.endpoints().base, QUrl());
        QVERIFY(timer.elapsed() < 1000);
        QTRY_VERIFY(QFile::exists(ownFolder() + "/service.log"));
        QTRY_VERIFY(manner == "dies" || QFile::exists(ownFolder() + "/running"));
        QTRY_COMPARE(called, calls);
        QTRY_COMPARE(messages.texts().size(), told);
        QCOMPARE(called, calls);
        QCOMPARE(store.endpoints().base,
                 told + (calls == 0) > 0 ? QUrl() : QUrl("http://127.0.0.1:5"));
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
        m_data = m_folder->filePath("sub/data");
        qputenv("STANDIN_DO", manner.toLatin1());
        const QString program = QCoreApplication::applicationDirPath() + "/teko-service";
        m_service = std::make_unique<EmbeddedService>(
            manner == "missing" ? "/no/such/program" : program, m_data);
        QDir(ownFolder()).removeRecursively();
    }
    /// Where the program keeps the data of its service.
    static QString ownFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/service";
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
