// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "account/signout.h"
#include "account/userauth.h"
#include "app/base/programdata.h"
#include "service/embeddedservice.h"
#include "service/tekoserver.h"
#include "tests/support/madesources.h"
#include "tests/support/testmain.h"

#include <QDir>
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
        , client(store)
    {
        store.setEndpointSource([service] {
            return ServiceEndpoints{service, QUrl(service.toString() + "/generate_204"), {}};
        });
        store.setLocalAccount(std::move(local));
        QObject::connect(&client, &TekoServer::savedWithId, &client,
                         [this](int id) { news = QString::number(id); });
        QObject::connect(&client, &TekoServer::remainSeconds, &client, [this] { news = "wait"; });
        QObject::connect(&client, &TekoServer::filesReady, &client, [this] { news = "ready"; });
        QObject::connect(&client, &TekoServer::showError, &client,
                         [this](const QString &text) { news = text; });
    }

    /// What comes of one request.
    template <typename Ask> QString answerTo(Ask ask)
    {
        news.clear();
        ask();
        return QTest::qWaitFor([this] { return !news.isEmpty(); }, 30000) ? news : "silence";
    }

    ProgramData store;
    UserAuth auth;
    TekoServer client;
    QString news;
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
            Person ann(m_url);
            QSignalSpy welcomed(&ann.auth, &UserAuth::welcomed);
            ann.auth.registerAccount("Ann", "ann@b.de", "password 1");
            QTRY_COMPARE(welcomed.size(), 1);
            QCOMPARE(ann.store.user().name, "Ann");
        }
        Person ann(m_url); // the next run
        QSignalSpy entered(&ann.auth, &UserAuth::signedIn);
        ann.auth.initialCheck();
        QTRY_COMPARE(entered.size(), 1);
        QCOMPARE(ann.store.user().email, "ann@b.de");
        signOut(ann.store, ann.auth.client());

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

    void strangersReachNothing()
    {
        Person ann(m_url);
        enter(ann, "ann2@b.de");
        const QString wav = m_folder.filePath("song.wav");
        QVERIFY(makeSource(wav, 2));
        const int id = ann.answerTo([&] {
                              ann.client.uploadFile("bass", wav, "song", ann.store.user().hash,
                                                    "demo", "/x/song.wav", "wav");
                          })
                           .toInt();
        QVERIFY(id != 0);

        freshInstallation();
        Person bob(m_url);
        enter(bob, "bob@b.de");
        const QString hash = bob.store.user().hash;
        const QString unknown = "The service does not know this file.";
        QCOMPARE(bob.answerTo([&] { bob.client.remains(id); }), unknown);
        QCOMPARE(bob.answerTo([&] { bob.client.repeatDemoFile(hash, "wav", id); }), unknown);
        QVERIFY(bob.answerTo([&] { bob.client.download(id, m_folder.filePath("got"), false); })
                    .contains(unknown));
        QCOMPARE(bob.answerTo([&] {
                        bob.client.repeatFile("vocals", "song.wav", "song", hash, "demo", "/x",
                                              "wav");
                    })
                     .toInt(),
                 0);
        bob.client.removeUploaded("song.wav");
        bob.client.cancel(id);
        QCOMPARE(bob.auth.client().postAndWait("auth/archive.php", {{"hash", hash}}).text, "[]");
        QTRY_COMPARE_WITH_TIMEOUT(ann.answerTo([&] { ann.client.remains(id); }), "ready", 60000);
        const QString annsHash = ann.store.user().hash;
        QVERIFY(ann.answerTo([&] {
                       ann.client.repeatFile("vocals", "song.wav", "song", annsHash, "demo", "/x",
                                             "wav");
                   })
                    .toInt()
                != 0);
        // Who has signed out is nobody any more, here and at the service.
        signOut(ann.store, ann.auth.client());
        QCOMPARE(ann.answerTo([&] { ann.client.remains(id); }), unknown);
        const auto answer = [&] {
            return bob.auth.client().postAndWait("auth/check.php", {{"hash", annsHash}}).text;
        };
        QTRY_VERIFY2(answer().contains("does not know this sign-in"), qPrintable(answer()));
    }

private:
    static void freshInstallation()
    {
        QDir(documentsAppFolder()).removeRecursively();
        QDir().mkpath(documentsAppFolder());
    }

    static void enter(Person &person, const QString &email)
    {
        QSignalSpy welcomed(&person.auth, &UserAuth::welcomed);
        person.auth.registerAccount("Name", email, "password");
        QTRY_COMPARE(welcomed.size(), 1);
    }

    [[nodiscard]] QString recoveryCode(const QString &email) const
    {
        QFile log(m_folder.filePath("service/service.log"));
        if (!log.open(QIODevice::ReadOnly))
            return {};
        const QRegularExpression line("recovery code for " + email + " is (\\w+)");
        return line.match(QString::fromUtf8(log.readAll())).captured(1);
    }

    QTemporaryDir m_folder;
    EmbeddedService m_service{QCoreApplication::applicationDirPath() + "/teko-service",
                              m_folder.filePath("service")};
    QUrl m_url;
    std::optional<LocalAccount> m_local;
};

TEKO_TEST_MAIN(TestAccountService)
#include "tst_accountservice.moc"
