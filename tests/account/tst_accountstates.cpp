// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "account/myaccount.h"
#include "account/userauth.h"
#include "account/userreply.h"
#include "service/tekoserver.h"
#include "tests/account/accountfixture.h"

#include <QQuickItem>
#include <QSignalSpy>

using Answer = ScriptedAnswer;

namespace {

/// Whether some visible text of a view begins so.
bool showsText(const QQuickItem *item, const QString &beginning)
{
    if (!item->isVisible())
        return false;
    if (item->property("text").toString().startsWith(beginning))
        return true;
    return std::ranges::any_of(
        item->childItems(), [&](const QQuickItem *child) { return showsText(child, beginning); });
}

} // namespace

/// What each state of an account means for the gate and for what the user sees.
class TestAccountStates final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_fixture = std::make_unique<AccountFixture>();
    }

    void states_data()
    {
        QTest::addColumn<ScriptedAnswer>("network");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<QByteArray>("filesLeft");
        QTest::addColumn<bool>("isSignedIn");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<bool>("isLimitReached");
        QTest::addColumn<QString>("licence");
        QTest::addColumn<QString>("shown");
        const Answer there = Answer::text({}, 204);
        const auto row = [&](const char *name, const Answer &network, const QByteArray &user,
                             const QByteArray &left, bool isSignedIn, const char *mode,
                             bool isLimitReached, const char *licence, const char *shown) {
            QTest::newRow(name) << network << user << left << isSignedIn << mode << isLimitReached
                                << licence << shown;
        };
        row("signed in", there, userJson("h", activePlan), "7", true, "full", false, "active",
            "Files left for today: 7");
        row("demo", there, userJson("h"), "7", true, "demo", false, "none",
            "This is a demo account.");
        row("expired", there, userJson("h", expiredPlan), "7", true, "demo", false, "expired",
            "Your subscription has expired.");
        row("limit reached", there, userJson("h", activePlan), "0", true, "full", true, "active",
            "No files left for today.");
        row("limit not told", there, userJson("h", activePlan), "Ask later.", true, "full", false,
            "active", "Your subscription is active");
        row("offline", Answer::cut(), {}, "0", true, "demo", true, "none",
            "No internet connection!");
        row("signed out", there, "Please sign in.", "?", false, "demo", false, "none", "");
    }

    void states()
    {
        QFETCH(ScriptedAnswer, network);
        QFETCH(QByteArray, user);
        QFETCH(QByteArray, filesLeft);
        ProgramData &store = *m_fixture->store;
        Session(store).begin(parseUser(userJson("h")));
        store.setUser({});
        m_fixture->restart();
        m_fixture->server.on("/generate_204", {network});
        m_fixture->server.on("/teko-server/auth/check.php", {Answer::text(user)});
        m_fixture->server.on("/teko-server/processedFilesRemains.php", {Answer::text(filesLeft)});

        UserAuth auth(*m_fixture->store);
        QSignalSpy in(&auth, &UserAuth::signedIn);
        QSignalSpy out(&auth, &UserAuth::signedOut);
        auth.initialCheck();
        QTRY_COMPARE(in.size() + out.size(), 1);
        QTEST(in.size() == 1, "isSignedIn");
        QTEST(runMode(m_fixture->store->user()), "mode");
        TekoServer client(*m_fixture->store);
        QTEST(isDailyLimitReached(client.processedFilesRemains("h")), "isLimitReached");

        MyAccount window(*m_fixture->store);
        QSignalSpy closed(&window, &MyAccount::showParent);
        window.openWindow();
        QTEST(window.rootObject()->property("licence").toString(), "licence");
        QFETCH(QString, shown);
        if (in.isEmpty())
            QTRY_COMPARE(closed.size(), 1);
        else
            QTRY_VERIFY(showsText(window.rootObject(), shown));
    }

    void changes_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("isEditing");
        QTest::newRow("taken over") << userJson("h", activePlan) << "" << false;
        QTest::newRow("refused") << QByteArray("<b>Taken</b>") << "<b>Taken</b>" << true;
        QTest::newRow("strange") << QByteArray() << "The service gave an empty answer." << true;
    }

    void changes()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, error);
        m_fixture->server.on("/teko-server/auth/update.php", {Answer::text(answer)});
        Session(*m_fixture->store).begin(parseUser(userJson("h")));
        MyAccount window(*m_fixture->store);
        QObject *view = window.rootObject();
        view->setProperty("isEditing", true);
        window.save(" New ", "new@b.de", "short");
        QVERIFY(m_fixture->server.requests().isEmpty());
        QVERIFY(view->property("errorText").toString().contains("8 characters"));
        window.save(" New ", "new@b.de", "");
        QVERIFY(view->property("isBusy").toBool());
        QTRY_VERIFY(!view->property("isBusy").toBool());
        QCOMPARE(view->property("errorText").toString(), error);
        QTEST(view->property("isEditing").toBool(), "isEditing");
        const ScriptedRequest sent =
            m_fixture->server.requests("/teko-server/auth/update.php").constFirst();
        QCOMPARE(sent.field("hash") + '|' + sent.field("name") + '|' + sent.field("email") + '|'
                     + sent.field("password"),
                 "h|New|new@b.de|");
        QCOMPARE(runMode(m_fixture->store->user()), error.isEmpty() ? "full" : "demo");
    }

    /// The answer to a closed window must not bring a session back.
    void closedWindowHearsNothing()
    {
        const QByteArray path = "/teko-server/auth/check.php";
        m_fixture->server.on(path, {Answer::text(userJson("h")).held()});
        Session session(*m_fixture->store);
        session.begin(parseUser(userJson("h")));
        MyAccount window(*m_fixture->store);
        window.openWindow();
        QTRY_COMPARE(m_fixture->server.requests(path).size(), 1);
        window.cancel();
        session.end(true);
        m_fixture->server.release();
        m_fixture->server.on(path, {Answer::text("?")});
        UserAuth auth(*m_fixture->store);
        QCOMPARE(auth.client().postAndWait("auth/check.php", {}).text, "?");
        QCOMPARE(m_fixture->store->user(), UserRecord());
    }

private:
    static UserReply parseUser(const QByteArray &json)
    {
        return parseUserReply(QString::fromUtf8(json));
    }

    std::unique_ptr<AccountFixture> m_fixture;
};

TEKO_TEST_MAIN(TestAccountStates)
#include "tst_accountstates.moc"
