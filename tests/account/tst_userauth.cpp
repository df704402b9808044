// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/licencegate.h"
#include "account/userauth.h"
#include "tests/account/accountfixture.h"
#include "tests/support/smalldisk.h"

#include <QRegularExpression>

using Answer = ScriptedAnswer;
using Form = std::function<void(UserAuth &)>;
Q_DECLARE_METATYPE(Form)

/// Who is signed in, over several runs of the program against a scripted service.
class TestUserAuth final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_fixture = std::make_unique<AccountFixture>();
        start();
    }

    void cleanup()
    {
        m_auth.reset();
        m_fixture.reset();
    }

    void newcomerAtAFarServiceSignsIn()
    {
        m_auth->initialCheck();
        QVERIFY(m_events.isEmpty());
        QTRY_COMPARE(m_events, QStringList{"out"});
        QVERIFY(server().requests().isEmpty());
        const QString key = store().access().publicKey;
        QVERIFY(!key.isEmpty());

        signIn("h1");
        QCOMPARE(m_events, (QStringList{"out", "in", "welcome"}));
        QCOMPARE(store().user().name, "Ann <b>B</b>");
        QCOMPARE(store().access(), (AccessCredentials{key, "token-h1"}));

        nextRun(Answer::text(userJson("h1", activePlan)));
        QTRY_COMPARE(m_events, QStringList{"in"});
        QCOMPARE(server().requests(m_check).constLast().field("hash"), "h1");
        QCOMPARE(server().requests(m_check).constLast().field("publicKey"), key);
        QCOMPARE(server().requests(m_check).constLast().field("accessToken"), "token-h1");
        QCOMPARE(store().user().subscription.id, 3);
    }

    /// Only the service's refusal ends a kept session.
    void keptSession_data()
    {
        const Rows<ScriptedAnswer, bool, bool> add;
        add("refused", Answer::text("Please sign in again."), true, false);
        add("network away", Answer::text("x"), false, true);
        add("service broken", Answer::text("Oops", 500), true, true);
        add("answer cut off", Answer::cut(), true, true);
        add("half an answer", Answer::text("{\"user_id\":"), true, true);
        add("network's own page", Answer::text("<html>Pay</html>"), true, true);
        add("redirect", Answer::redirect(QUrl("http://127.0.0.1:1/")), true, true);
    }

    void keptSession()
    {
        const auto [answer, isNetworkThere, staysSignedIn] = fetchRow<ScriptedAnswer, bool, bool>();
        signIn("h1");
        if (!isNetworkThere)
            server().on("/generate_204", {Answer::cut()});
        nextRun(answer);
        QTRY_VERIFY(!m_events.isEmpty());
        QCOMPARE(m_events.constFirst(), staysSignedIn ? "in" : "out");
        QCOMPARE(store().user().hash, staysSignedIn ? "h1" : "");
        QCOMPARE(m_auth->email(), "ann@b.de");
        QCOMPARE(m_auth->errorText(), staysSignedIn ? "" : "Please sign in again.");
        if (!staysSignedIn)
            return;
        // The network is back: now the session is checked.
        server().on("/generate_204", {Answer::text({}, 204)});
        server().on(m_check, {Answer::text(userJson("h1", activePlan))});
        QTRY_COMPARE(store().user().subscription.id, 3);
    }

    void impatientChecksGiveOneAnswer()
    {
        signIn("h1");
        server().on(m_check, {Answer::text("Please sign in again.")});
        m_events.clear();
        m_auth->initialCheck();
        m_auth->initialCheck();
        QTRY_COMPARE(m_events, QStringList{"out"});
        // Whatever else was asked has been answered by then as well.
        QVERIFY(AccountClient(*m_fixture->store)
                    .postAndWait("auth/check.php", {})
                    .text.startsWith("Please"));
        QCOMPARE(m_events, QStringList{"out"});
    }

    void nothingSecretIsLogged()
    {
        static QString log;
        log.clear();
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { log += text + '\n'; });
        signIn("h1");
        server().on(m_check, {Answer::text("h1 is unknown")});
        m_auth->recheck();
        QTRY_VERIFY(m_events.contains("out"));
        server().on("/generate_204", {Answer::cut()});
        m_auth->signIn("ann@b.de", "s3cret");
        QTRY_VERIFY(!m_auth->isBusy());
        // Checks that go on and on while the service is out of reach do not fill the log.
        store().setLocalAccount(LocalAccount{"me@here", "h1"});
        m_auth->signInLocally();
        QTRY_COMPARE(m_events.constLast(), "in");
        // Unchecked, but his own.
        QCOMPARE(runMode(store().user()), "full");
        const qsizetype lines = log.count('\n');
        const qsizetype checks = server().requests("/generate_204").size();
        QTRY_VERIFY(server().requests("/generate_204").size() > checks + 3);
        QCOMPARE(log.count('\n'), lines);
        qInstallMessageHandler(before);
        QVERIFY(log.contains("auth/login.php"));
        for (const char *secret : {"s3cret", "password", "h1", "ann@b.de"})
            QVERIFY2(!log.contains(secret), secret);
    }

    void newcomerWithTheEmbeddedServiceNeverSeesAForm()
    {
        store().setLocalAccount(LocalAccount{"me@here", "own"});
        server().on(m_check, {Answer::text(userJson("own", activePlan))});
        m_auth->initialCheck();
        QTRY_COMPARE(m_events, QStringList{"in"});
        QCOMPARE(store().user().hash, "own");
        // He signs out: the form shows, now and at the next start, with a way back.
        Session(store()).end(true);
        m_auth->initialCheck();
        QTRY_COMPARE(m_events, (QStringList{"in", "out"}));
        nextRun(Answer::text(userJson("own", activePlan)), LocalAccount{"me@here", "own"});
        QTRY_COMPARE(m_events, QStringList{"out"});
        QVERIFY(m_auth->hasLocalAccount());
        m_auth->signInLocally();
        QTRY_COMPARE(m_events, (QStringList{"out", "in"}));
        QCOMPARE(store().user().hash, "own");
    }

    void sessionIsShownToItsServiceAlone_data()
    {
        const Rows<std::optional<LocalAccount>, std::optional<LocalAccount>, QStringList> add;
        const LocalAccount local{"me@here", "own"};
        add("from this computer to a far service", local, std::nullopt, QStringList());
        add("from a far service to this computer", std::nullopt, local, QStringList{"own"});
    }

    void sessionIsShownToItsServiceAlone()
    {
        const auto [before, after, asked] =
            fetchRow<std::optional<LocalAccount>, std::optional<LocalAccount>, QStringList>();
        store().setLocalAccount(before);
        signIn("h1");
        server().clearRequests();
        nextRun(Answer::text(userJson("own")), after);
        QTRY_COMPARE(m_events, QStringList{after ? "in" : "out"});
        QStringList hashes;
        for (const ScriptedRequest &request : server().requests(m_check)) {
            hashes << request.field("hash");
            QCOMPARE(request.field("accessToken"), "");
        }
        QCOMPARE(hashes, asked);
    }

    void ownAccountFollowsARefusedSession()
    {
        store().setLocalAccount(LocalAccount{"me@here", "own"});
        signIn("h1");
        server().on(m_check, {Answer::text("Who?"), Answer::text(userJson("own"))});
        nextRun({}, LocalAccount{"me@here", "own"});
        QTRY_COMPARE(m_events, QStringList{"in"});
        QCOMPARE(store().user().hash, "own");
    }

    void withoutAServiceTheProgramStillOpens()
    {
        store().setEndpointSource({});
        m_auth->initialCheck();
        QTRY_COMPARE(m_events, QStringList{"in"});
        QCOMPARE(store().user(), UserRecord());
    }

    void folderThatCannotBeWritten()
    {
        QDir(documentsAppFolder()).removeRecursively();
        for (int i = 0; i < 4; ++i)
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
        signIn("h1");
        server().on(m_check, {Answer::text(userJson("h1"))});
        m_auth->recheck();
        QTRY_COMPARE(m_events, (QStringList{"in", "welcome", "in"}));
        Session(store()).end(true);
        m_auth->recheck();
        QTRY_COMPARE(m_events.constLast(), "out");
    }

    void signOutOnAFullDisk()
    {
        const SmallDisk disk(documentsAppFolder());
        if (!disk.isMounted())
            QSKIP("needs the right to mount a small file system");
        store().setLocalAccount(LocalAccount{"me@here", "own"});
        signIn("h1");
        QFile filler(documentsAppFolder() + "/filler");
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) > 0)
            continue;
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
        Session(store()).end(true);
        nextRun(Answer::text(userJson("h1")), LocalAccount{"me@here", "own"});
        QTRY_COMPARE(m_events, QStringList{"out"});
    }

    void forms_data()
    {
        const Rows<Form, QByteArray, QByteArray, QByteArray, QStringList, QString> add;
        const Form login = [](UserAuth &auth) { auth.signIn(" a@b ", " pass "); };
        const Form enrol = [](UserAuth &auth) { auth.registerAccount(" Ann ", "a@b", "12345678"); };
        const Form ask = [](UserAuth &auth) { auth.startRecovery("a@b"); };
        const QStringList in{"in", "welcome"};
        add("sign in", login, "login.php", userJson("h"), "email=a@b&password=%20pass%20", in, "");
        add("markup", login, "login.php", "<b>No</b>", "email=a@b&password=%20pass%20", {},
            "<b>No</b>");
        add("nothing", login, "login.php", "", "email=a@b&password=%20pass%20", {},
            "The service gave an empty answer.");
        add("refusal", login, "login.php", "No <b>way</b>.", "email=a@b&password=%20pass%20", {},
            "No <b>way</b>.");
        add("register", enrol, "register.php", userJson("h"),
            "name=Ann&email=a@b&password=12345678", in, "");
        add("taken", enrol, "register.php", "Taken.", "name=Ann&email=a@b&password=12345678", {},
            "Taken.");
        add("recover", ask, "recover.php", "1\n", "email=a@b", {"recover"}, "");
        add("no recovery", ask, "recover.php", "Too many tries.", "email=a@b", {},
            "Too many tries.");
        const Form typingError = [](UserAuth &auth) { auth.signIn("a", "b"); };
        add("typing error", typingError, "login.php", "", "", {},
            "Please enter a valid e-mail address.");
    }

    void forms()
    {
        const auto [form, script, answer, body, events, error] =
            fetchRow<Form, QByteArray, QByteArray, QByteArray, QStringList, QString>();
        const QByteArray path = "/teko-server/auth/" + script;
        server().on(path, {Answer::text(answer)});
        form(*m_auth);
        QCOMPARE(m_auth->isBusy(), !body.isEmpty());
        form(*m_auth); // an impatient second click
        QTRY_VERIFY(!m_auth->isBusy());
        QTRY_COMPARE(m_events, events);
        QCOMPARE(m_auth->errorText(), error);
        const QList<ScriptedRequest> requests = server().requests(path);
        QCOMPARE(requests.size(), body.isEmpty() ? 0 : 1);
        if (!requests.isEmpty())
            QVERIFY2(requests.constFirst().body.startsWith(body + "&publicKey"),
                     requests.constFirst().body);
    }

    void newPasswordSignsIn()
    {
        server().on("/teko-server/auth/recover.php", {Answer::text("1")});
        server().on(m_login, {Answer::text(userJson("h2"))});
        m_auth->recover("a@b", " c0de ", "12345678");
        QTRY_COMPARE(m_events, (QStringList{"in", "welcome"}));
        QCOMPARE(server().requests("/teko-server/auth/recover.php").constFirst().field("code"),
                 "c0de");
        QCOMPARE(server().requests(m_login).constFirst().field("password"), "12345678");
    }

    /// What is under way when somebody signs out must not sign him in again.
    void signOutDuringACheck()
    {
        signIn("h1");
        server().on(m_check, {Answer::text(userJson("h1")).held()});
        m_auth->recheck();
        QTRY_COMPARE(server().requests(m_check).size(), 1);
        Session(store()).end(true);
        m_auth->initialCheck();
        server().release();
        QTRY_COMPARE(m_events.constLast(), "out");
        QCOMPARE(store().user(), UserRecord());
    }

private:
    [[nodiscard]] ScriptedServer &server() { return m_fixture->server; }
    [[nodiscard]] ProgramData &store() { return *m_fixture->store; }

    void start()
    {
        m_events.clear();
        m_auth = std::make_unique<UserAuth>(store(), nullptr, std::chrono::milliseconds(20));
        connect(m_auth.get(), &UserAuth::signedIn, this, [this] { m_events += "in"; });
        connect(m_auth.get(), &UserAuth::signedOut, this, [this] { m_events += "out"; });
        connect(m_auth.get(), &UserAuth::welcomed, this, [this] { m_events += "welcome"; });
        connect(m_auth.get(), &UserAuth::recoveryStarted, this, [this] { m_events += "recover"; });
    }

    void signIn(const QByteArray &hash)
    {
        server().on(m_login, {Answer::text(userJson(hash))});
        m_auth->signIn("ann@b.de", "password");
        QTRY_VERIFY(m_events.contains("welcome"));
    }

    void nextRun(const ScriptedAnswer &check, const std::optional<LocalAccount> &local = {})
    {
        m_auth.reset();
        m_fixture->restart();
        store().setLocalAccount(local);
        if (!check.bytes.isEmpty() || check.ending != Answer::Ending::KeepAlive)
            server().on(m_check, {check});
        start();
        m_auth->initialCheck();
    }

    const QByteArray m_check = "/teko-server/auth/check.php";
    const QByteArray m_login = "/teko-server/auth/login.php";
    std::unique_ptr<AccountFixture> m_fixture;
    std::unique_ptr<UserAuth> m_auth;
    QStringList m_events;
};

TEKO_TEST_MAIN(TestUserAuth)
#include "tst_userauth.moc"
