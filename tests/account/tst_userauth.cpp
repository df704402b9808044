// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "account/userauth.h"
#include "account/userreply.h"
#include "tests/account/accountcase.h"

#include <QScopeGuard>

using Action = std::function<void(UserAuth &)>;

/// Who is signed in, over several runs of the program against a scripted service.
class TestUserAuth final : public AccountCase
{
    Q_OBJECT

private slots:
    /// Columns: at which service somebody signed in during the run before, the service of this run,
    /// what is done, the service's answers to it (none: the network is away), and the story().
    void actions_data()
    {
        const Rows<QString, QString, Action, QList<Answer>, QString> add;
        const Action check = [](UserAuth &auth) { auth.initialCheck(); };
        const Answer user = Answer::text(userJson("h", activePlan));
        const Answer refusal = Answer::text("No <b>way</b>.");
        const QString asked = "check.php?hash=h1 of-h1 ";
        const QString own = "check.php?hash=own ";
        add("newcomer", "", "far", check, {}, "out demo");
        add("newcomer here", "", "here", check, {user}, own + "in h full");
        add("newcomer here, offline", "", "here", check, {}, "in own full");
        add("kept", "far", "far", check, {user}, asked + "in h full");
        add("refused", "far", "far", check, {refusal}, asked + "out demo No <b>way</b>.");
        add("refused here", "here", "here", check, {refusal, user}, asked + own + "in h full");
        add("offline", "far", "far", check, {}, "in h1 demo");
        add("broken", "far", "far", check, {Answer::text("Oops", 500)}, asked + "in h1 demo");
        add("half an answer", "far", "far", check, {Answer::text("{\"i\":")}, asked + "in h1 demo");
        add("far session", "far", "here", check, {user}, own + "in h full");
        add("session from here", "here", "far", check, {user}, "out demo");
        add("no service", "", "nowhere", check, {}, "in demo");

        const Action signIn = [](UserAuth &auth) { auth.signIn(" a@b ", " pass "); };
        const Action enrol = [](UserAuth &auth) { auth.registerAccount("A ", "a@b", "12345678"); };
        const Action forget = [](UserAuth &auth) { auth.startRecovery("a@b"); };
        const Action recover = [](UserAuth &auth) { auth.recover("a@b", " c0de ", "12345678"); };
        const QString login = "login.php?email=a@b&password=";
        const QString code = "recover.php?email=a@b&code=c0de&password=12345678 ";
        add("sign in", "", "far", signIn, {user}, login + "%20pass%20 in welcome h full");
        add("wrong", "", "far", signIn, {refusal}, login + "%20pass%20 demo No <b>way</b>.");
        add("register", "", "far", enrol, {user},
            "register.php?name=A&email=a@b&password=12345678 in welcome h full");
        add("forgotten", "", "far", forget, {Answer::text("1")}, "recover.php?email=a@b code demo");
        // The sign-in that follows meets the same answer, which is no user.
        add("code", "", "far", recover, {Answer::text("1")}, code + login + "12345678 demo 1");
        add("wrong code", "", "far", recover, {refusal}, code + "demo No <b>way</b>.");
    }

    /// Only its own service sees a session, and only that service's refusal ends it. Whatever is
    /// done twice at once happens once.
    void actions()
    {
        const auto [before, now, act, answers, outcome] =
            fetchRow<QString, QString, Action, QList<Answer>, QString>();
        nextRun(before);
        if (!before.isEmpty())
            Session(store()).begin(m_session);
        nextRun(now);
        for (const QByteArray script : {"check", "login", "register", "recover"})
            server().on("/teko-server/auth/" + script + ".php", answers);
        if (answers.isEmpty())
            server().on("/generate_204", {Answer::cut()});
        act(*m_auth);
        act(*m_auth);
        QTRY_COMPARE(story(), outcome);
        waitForALaterAnswer();
        QCOMPARE(story(), outcome);
    }

    /// As long as the service is out of reach, with one line in the log, which has no secrets.
    void checksAgain()
    {
        static QString log;
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { log += text + '\n'; });
        const auto restored = qScopeGuard([before] { qInstallMessageHandler(before); });
        nextRun("far", std::chrono::milliseconds(1));
        Session(store()).begin(m_session);
        server().on(m_check, {Answer::text("Oops", 500)});
        m_auth->initialCheck();
        QTRY_VERIFY(m_events.count("in") > 4);
        QCOMPARE(log.count("AccountClient: auth/check.php"), 1);
        server().on(m_check, {Answer::text("h1 is unknown")});
        QTRY_COMPARE(m_events.last(), "out");
        m_auth->signIn("ann@b.de", "s3cret");
        QTRY_VERIFY(log.contains("auth/login.php"));
        for (const char *secret : {"s3cret", "of-h1", "h1", "ann@b.de"})
            QVERIFY2(!log.contains(secret), secret);
    }

    /// Neither a check that was under way nor the next start signs in again.
    void signedOutStaysSignedOut()
    {
        nextRun("here");
        Session(store()).begin(m_session);
        server().on(m_check, {Answer::text(userJson("own")).held()});
        m_auth->initialCheck();
        QTRY_COMPARE(server().requests(m_check).size(), 1);
        Session(store()).end(true);
        m_auth->initialCheck();
        server().release();
        waitForALaterAnswer();
        QCOMPARE(store().user(), UserRecord());
        nextRun("here");
        m_auth->initialCheck();
        QTRY_COMPARE(m_events, QStringList("out"));
        m_auth->signInLocally();
        QTRY_COMPARE(server().requests(m_check).size(), 1);
    }

private:
    /// The next start of the program, at a service that is "far" or "here", on this computer, or
    /// "nowhere".
    void nextRun(const QString &service, std::chrono::milliseconds retry = std::chrono::hours(1))
    {
        m_home->restart();
        if (service == "here")
            store().setLocalAccount(LocalAccount{"me@here", "own"});
        if (service == "nowhere")
            store().setEndpointSource({});
        m_auth = std::make_unique<UserAuth>(store(), nullptr, retry);
        connect(m_auth.get(), &UserAuth::signedIn, this, [this] { m_events << "in"; });
        connect(m_auth.get(), &UserAuth::signedOut, this, [this] { m_events << "out"; });
        connect(m_auth.get(), &UserAuth::welcomed, this, [this] { m_events << "welcome"; });
        connect(m_auth.get(), &UserAuth::recoveryStarted, this, [this] { m_events << "code"; });
        m_events.clear();
        server().clearRequests();
    }

    /// What happened in this run: requests with their access tokens, signals, then the session's
    /// hash, the run mode and the error that is shown.
    QString story()
    {
        QStringList parts;
        for (const ScriptedRequest &request : server().requests()) {
            const QByteArray body = request.body.left(request.body.indexOf("&publicKey"));
            if (!body.isEmpty())
                parts << request.path().mid(18) + '?' + body << request.field("accessToken");
        }
        parts << m_events << store().user().hash << runMode(store().user()) << m_auth->errorText();
        return parts.join(' ').simplified();
    }

    const UserReply m_session = parseUserReply(QString::fromUtf8(userJson("h1")));
    std::unique_ptr<UserAuth> m_auth;
    QStringList m_events;
};

TEKO_TEST(TestUserAuth)
#include "tst_userauth.moc"
