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
        const Rows<ScriptedAnswer, QByteArray, QByteArray, bool, QString, bool, QString, QString>
            add;
        const Answer there = Answer::text({}, 204);
        add("signed in", there, userJson("h", activePlan), "7", true, "full", false, "active",
            "Files left for today: 7");
        add("demo", there, userJson("h"), "7", true, "demo", false, "none",
            "This is a demo account.");
        add("expired", there, userJson("h", expiredPlan), "7", true, "demo", false, "expired",
            "Your subscription has expired.");
        add("limit reached", there, userJson("h", activePlan), "0", true, "full", true, "active",
            "No files left for today.");
        add("limit not told", there, userJson("h", activePlan), "Ask later.", true, "full", false,
            "active", "Your subscription is active");
        add("offline", Answer::cut(), {}, "0", true, "demo", true, "none",
            "No internet connection!");
        add("signed out", there, "Please sign in.", "?", false, "demo", false, "none", "");
    }

    void states()
    {
        const auto [network, user, filesLeft, isSignedIn, mode, isLimitReached, licence, shown] =
            fetchRow<ScriptedAnswer, QByteArray, QByteArray, bool, QString, bool, QString,
                     QString>();
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
        QCOMPARE(in.size() == 1, isSignedIn);
        QCOMPARE(runMode(m_fixture->store->user()), mode);
        TekoServer client(*m_fixture->store);
        QCOMPARE(isDailyLimitReached(client.processedFilesRemains("h", this)), isLimitReached);

        MyAccount window(*m_fixture->store);
        QSignalSpy closed(&window, &MyAccount::showParent);
        window.openWindow();
        QCOMPARE(window.rootObject()->property("licence").toString(), licence);
        if (in.isEmpty())
            QTRY_COMPARE(closed.size(), 1);
        else
            QTRY_VERIFY(showsText(window.rootObject(), shown));
    }

    void changes_data()
    {
        const Rows<QByteArray, QString, bool> add;
        add("taken over", userJson("h", activePlan), "", false);
        add("refused", "<b>Taken</b>", "<b>Taken</b>", true);
        add("strange", "", "The service gave an empty answer.", true);
    }

    void changes()
    {
        const auto [answer, error, isEditing] = fetchRow<QByteArray, QString, bool>();
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
        QCOMPARE(view->property("isEditing").toBool(), isEditing);
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
        AccountClient client(*m_fixture->store);
        QCOMPARE(client.postAndWait("auth/check.php", {}).text, "?");
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
