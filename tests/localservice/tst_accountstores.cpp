// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/refusal.h"
#include "stores.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QtTest>

/// Passwords, sessions and daily counts.
class TestAccountStores final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        initialiseSecrets();
        m_dir = std::make_unique<QTemporaryDir>();
    }

    void signsInAndOut()
    {
        Stores stores(*m_dir);
        const Account anna = stores.accounts.add({"Anna", "Anna@Example.org", "correct horse"});
        QVERIFY_EXCEPTION_THROWN(stores.accounts.add({"B", "anna@example.ORG", "12345678"}),
                                 Refusal);
        QCOMPARE(stores.accounts.signIn("anna@example.org", "correct horse")->id, anna.id);
        QVERIFY(!stores.accounts.signIn("anna@example.org", "correct horsE"));
        QVERIFY(!stores.accounts.signIn("anna@example.org", ""));
        QVERIFY(!stores.accounts.signIn("nobody@example.org", "nobody's"));
        // The account without a password cannot be entered by an empty one.
        (void)stores.accounts.localSession();
        QVERIFY(!stores.accounts.signIn(localEmail, ""));

        const std::string here = stores.accounts.openSession(anna.id);
        const std::string elsewhere = stores.accounts.openSession(anna.id);
        QVERIFY(here != elsewhere && here.size() == 64);
        QVERIFY(stores.accounts.tokenOf(here) != stores.accounts.tokenOf(elsewhere));
        stores.accounts.change(anna, {"Ann", "ann@example.org", "battery staple"}, here);
        QCOMPARE(stores.accounts.accountOf(here)->name, std::string("Ann"));
        QVERIFY(!stores.accounts.accountOf(elsewhere));
        QVERIFY(!stores.accounts.accountOf(""));
        QVERIFY(stores.accounts.signIn("ann@example.org", "battery staple"));
        stores.accounts.change(anna, {"Ann", "ann@example.org", ""}, here);
        QVERIFY(stores.accounts.signIn("ann@example.org", "battery staple"));
    }

    void recoversOnce()
    {
        Stores stores(*m_dir);
        const Account anna = stores.accounts.add({"Anna", "a@b", "forgotten"});
        const std::string session = stores.accounts.openSession(anna.id);
        QVERIFY(!stores.accounts.recover("a@b", "", "new password"));
        const std::string code = stores.accounts.openRecovery("a@b").value();
        QVERIFY(!stores.accounts.openRecovery("x@b"));
        QVERIFY(!stores.accounts.recover("a@b", "0000000000", "new password"));
        QVERIFY(!stores.accounts.recover("x@b", code, "new password"));
        // A password that cannot be kept does not use up the code.
        const auto run = [&stores](const char *statement) {
            stores.database.access().session << statement, Poco::Data::Keywords::now;
        };
        run("CREATE TRIGGER broken BEFORE DELETE ON sessions BEGIN SELECT RAISE(ABORT, ''); END");
        QVERIFY_EXCEPTION_THROWN((void)stores.accounts.recover("a@b", code, "new password"),
                                 Poco::Exception);
        run("DROP TRIGGER broken");
        QVERIFY(stores.accounts.recover("a@b", code, "new password"));
        QVERIFY(stores.accounts.signIn("a@b", "new password"));
        QVERIFY(!stores.accounts.accountOf(session));
        QVERIFY(!stores.accounts.recover("a@b", code, "another one"));
        QVERIFY(!stores.accounts.openRecovery("a@b")->empty());
    }

    void keepsAValidRecoveryCode_data()
    {
        const Rows<int, bool> add;
        add("asked again at once", 0, true);
        add("asked again when it ends", 1800, true);
        add("asked again afterwards", 1801, false);
        add("asked again before the clock was set back", -3600, false);
    }

    void keepsAValidRecoveryCode()
    {
        const auto [secondsLater, isKept] = fetchRow<int, bool>();
        Stores stores(*m_dir);
        stores.addAccount("a@b");
        const std::string code = stores.accounts.openRecovery("a@b").value();
        stores.secondsLater = secondsLater;
        const std::string again = stores.accounts.openRecovery("a@b").value();
        QCOMPARE(again.empty(), isKept);
        QVERIFY(stores.accounts.recover("a@b", isKept ? code : again, "new password"));
    }

    void endsUnusedSessions_data()
    {
        const Rows<bool, QList<int>, bool> add;
        add("within the time", false, {29}, true);
        add("too late", false, {31}, false);
        add("used now and then", false, {20, 40, 60, 89}, true);
        add("used, then forgotten", false, {20, 51}, false);
        add("this computer's own", true, {2000}, true);
    }

    void endsUnusedSessions()
    {
        const auto [isLocal, daysOfUse, lasts] = fetchRow<bool, QList<int>, bool>();
        Stores stores(*m_dir);
        const std::int64_t account = stores.addAccount("a@b");
        const std::string hash =
            isLocal ? stores.accounts.localSession() : stores.accounts.openSession(account);
        bool isKnown = false;
        for (const int day : daysOfUse) {
            stores.secondsLater = day * 86400;
            isKnown = stores.accounts.accountOf(hash).has_value();
        }
        QCOMPARE(isKnown, lasts);
        // A session that is over for good does not come back with the clock.
        (void)stores.accounts.openSession(account);
        stores.secondsLater = 0;
        QCOMPARE(stores.accounts.accountOf(hash).has_value(), lasts);
        stores.accounts.closeSession(hash);
        if (isLocal)
            stores.accounts.change(stores.accounts.accountOf(hash).value(), {"L", "l@b", "new"},
                                   "");
        QCOMPARE(stores.accounts.accountOf(hash).has_value(), isLocal);
    }

    void endsTheSessionThatIsUnusedForTheLongest()
    {
        Stores stores(*m_dir);
        const std::string mine = stores.accounts.localSession();
        const std::int64_t account = stores.accounts.accountOf(mine)->id;
        const std::string first = stores.accounts.openSession(account);
        const std::string second = stores.accounts.openSession(account);
        std::vector<std::string> kept = {mine, first,
                                         stores.accounts.openSession(stores.addAccount("a@b"))};
        stores.secondsLater = 86400;
        QVERIFY(stores.accounts.accountOf(first));
        while (kept.size() <= AccountStore::maxSessions)
            kept.push_back(stores.accounts.openSession(account));
        QVERIFY(!stores.accounts.accountOf(second));
        for (const std::string &session : kept)
            QVERIFY(stores.accounts.accountOf(session));
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

TEKO_TEST(TestAccountStores)

#include "tst_accountstores.moc"
