// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "account/signout.h"
#include "account/userauth.h"
#include "base/programdata.h"
#include "service/embeddedservice.h"
#include "tests/support/files.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

/// Somebody with an installation of his own.
class Person
{
public:
    explicit Person(const QUrl &service, std::optional<LocalAccount> local = {})
        : store(documentsAppFolder() + "/teko.ini")
        , auth(store)
    {
        store.setEndpointSource([service] {
            return ServiceEndpoints{service, QUrl(service.toString() + "/generate_204"), {}};
        });
        store.setLocalAccount(std::move(local));
    }

    ProgramData store;
    UserAuth auth;
};

} // namespace

/// Accounts at the real service.
class TestAccountService final : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_service.start();
        QTRY_VERIFY_WITH_TIMEOUT(m_service.announcement(), 30000);
        const auto &announcement = m_service.announcement();
        m_url = announcement->url;
        m_local = LocalAccount{announcement->email, announcement->hash};
        // An embedded service takes no registrations.
        m_open.setStandardErrorFile(m_folder.filePath("open.log"));
        m_open.start(QCoreApplication::applicationDirPath() + "/teko-service",
                     {"--listen", "127.0.0.1:0", "--data", m_folder.filePath("open")});
        const QRegularExpression address("Listening on (\\S+)");
        QTRY_VERIFY_WITH_TIMEOUT(openLog().contains(address), 30000);
        m_openUrl = QUrl(address.match(openLog()).captured(1));
    }

    void cleanupTestCase()
    {
        m_open.terminate();
        QVERIFY(m_open.waitForFinished());
    }

    void init()
    {
        TestCase::init();
        freshInstallation();
    }

    void newcomerIsSignedIn()
    {
        Person owner(m_url, m_local);
        QSignalSpy entered(&owner.auth, &UserAuth::signedIn);
        owner.auth.initialCheck();
        QTRY_COMPARE(entered.size(), 1);
        QCOMPARE(owner.store.user().hash, m_local->hash);
        QVERIFY(owner.store.user().userId != 0);
        QCOMPARE(runMode(owner.store.user()), "full");
    }

    void lifeOfAnAccount()
    {
        {
            Person ann(m_openUrl);
            QSignalSpy welcomed(&ann.auth, &UserAuth::welcomed);
            ann.auth.registerAccount("Ann", "ann@b.de", "password 1");
            QTRY_COMPARE(welcomed.size(), 1);
            QCOMPARE(ann.store.user().name, "Ann");
        }
        Person ann(m_openUrl); // the next run
        QSignalSpy entered(&ann.auth, &UserAuth::signedIn);
        ann.auth.initialCheck();
        QTRY_COMPARE(entered.size(), 1);
        QCOMPARE(ann.store.user().email, "ann@b.de");
        AccountClient client(ann.store);
        signOut(ann.store, client);

        ann.auth.signIn("ann@b.de", "password 2");
        QTRY_VERIFY(!ann.auth.errorText().isEmpty());
        const QString refusal = ann.auth.errorText();
        ann.auth.signIn("nobody@b.de", "password 2");
        QTRY_VERIFY(!ann.auth.isBusy());
        QCOMPARE(ann.auth.errorText(), refusal);

        QSignalSpy started(&ann.auth, &UserAuth::recoveryStarted);
        ann.auth.startRecovery("ann@b.de");
        QTRY_COMPARE(started.size(), 1);
        const QString code = recoveryCode("ann@b.de");
        QVERIFY(!code.isEmpty());
        ann.auth.recover("ann@b.de", code, "password 2");
        QTRY_COMPARE(entered.size(), 2);
        ann.auth.recover("ann@b.de", code, "password 3");
        QTRY_COMPARE(ann.auth.errorText(), "The recovery code is wrong or no longer valid.");
    }

    /// Who has signed out is nobody any more, here and at the service.
    void signOutEndsTheSession()
    {
        Person ann(m_openUrl);
        QSignalSpy welcomed(&ann.auth, &UserAuth::welcomed);
        ann.auth.registerAccount("Name", "ann2@b.de", "password");
        QTRY_COMPARE(welcomed.size(), 1);
        const QString hash = ann.store.user().hash;
        AccountClient client(ann.store);
        signOut(ann.store, client);
        QCOMPARE(ann.store.user(), UserRecord());
        const auto answer = [&] {
            return client.postAndWait("auth/check.php", {{"hash", hash}}).text;
        };
        QTRY_VERIFY2(answer().contains("does not know this sign-in"), qPrintable(answer()));
    }

private:
    static void freshInstallation()
    {
        QDir(documentsAppFolder()).removeRecursively();
        QDir().mkpath(documentsAppFolder());
    }

    [[nodiscard]] QString recoveryCode(const QString &email) const
    {
        const QRegularExpression line("recovery code for " + email + " is (\\w+)");
        return line.match(openLog()).captured(1);
    }
    [[nodiscard]] QString openLog() const
    {
        return QString::fromUtf8(readFile(m_folder.filePath("open.log")));
    }

    QTemporaryDir m_folder;
    EmbeddedService m_service{QCoreApplication::applicationDirPath() + "/teko-service",
                              m_folder.filePath("service")};
    QUrl m_url;
    QProcess m_open;
    QUrl m_openUrl;
    std::optional<LocalAccount> m_local;
};

TEKO_TEST_MAIN(TestAccountService)
#include "tst_accountservice.moc"
