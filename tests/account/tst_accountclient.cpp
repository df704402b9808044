// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/accountclient.h"
#include "tests/account/accountfixture.h"

#include <QTimer>

using Answer = ScriptedAnswer;

/// The requests of the account side against a scripted server.
class TestAccountClient final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_fixture = std::make_unique<AccountFixture>();
        m_fixture->store->setAccess({"key & more", "token+1"});
        m_client = std::make_unique<AccountClient>(*m_fixture->store);
        m_answers.clear();
    }

    void cleanup()
    {
        m_client.reset();
        m_fixture.reset();
    }

    void asksForTheNetworkAndSendsTheCredentials()
    {
        m_fixture->server.on(m_path, {Answer::text("Bad <b>password</b>")});
        ask();
        QTRY_COMPARE(m_answers, QStringList{"answered Bad <b>password</b>"});
        QCOMPARE(m_client->replyText(), "Bad <b>password</b>");
        const QList<ScriptedRequest> requests = m_fixture->server.requests();
        QCOMPARE(requests.size(), 2);
        QCOMPARE(requests.constFirst().path(), "/generate_204");
        QCOMPARE(requests.constLast().method(), "POST");
        QCOMPARE(requests.constLast().path(), m_path);
        QCOMPARE(requests.constLast().header("Content-Type"), "application/x-www-form-urlencoded");
        QCOMPARE(requests.constLast().body,
                 "email=a%2Bb@c.de&password=p%26%25%20%C3%A4&publicKey=key%20%26%20more"
                 "&accessToken=token%2B1");
    }

    void tellsWhatWentWrong_data()
    {
        const Rows<ScriptedAnswer, ScriptedAnswer, QString> add;
        const Answer fine = Answer::text({}, 204);
        const Answer yes = Answer::text("1");
        const QString offline = "offline No internet connection!";
        add("no network", Answer::cut(Answer::Ending::Reset), yes, offline);
        add("network refuses", Answer::text({}, 500), yes, offline);
        add("network is silent", Answer::never(), yes, offline);
        add("no answer", fine, Answer::never(), "failed Operation canceled");
        add("half an answer", fine, Answer::wrongLength("{\"ha", "400"),
            "failed Connection closed");
        add("redirect", fine, Answer::redirect(QUrl("http://127.0.0.1:1/")),
            "failed The service answered with a redirect, which is not "
            "followed.");
        add("page instead of the network's yes", Answer::text("<html>"), yes, "answered 1");
    }

    void tellsWhatWentWrong()
    {
        const auto [check, answer, outcome] = fetchRow<ScriptedAnswer, ScriptedAnswer, QString>();
        m_client =
            std::make_unique<AccountClient>(*m_fixture->store, std::chrono::milliseconds(300));
        m_fixture->server.on("/generate_204", {check});
        m_fixture->server.on(m_path, {answer});
        ask();
        QTRY_COMPARE(m_answers, QStringList{outcome});
        QCOMPARE(m_fixture->server.requests(m_path).isEmpty(), outcome.startsWith("offline"));
    }

    void noServiceAtAll()
    {
        m_fixture->store->setEndpointSource({});
        ask();
        QVERIFY(m_answers.isEmpty());
        QTRY_COMPARE(m_answers, QStringList{"offline No internet connection!"});
    }

    /// Nobody is called whose object is gone, and waiting ends with the object that waits.
    void requestsThatNobodyWaitsFor_data()
    {
        const Rows<QString> add;
        for (const char *gone : {"context", "client", "abandoned"})
            add(gone, gone);
    }

    void requestsThatNobodyWaitsFor()
    {
        const auto [gone] = fetchRow<QString>();
        m_fixture->server.on(m_path, {Answer::text("1").held()});
        auto context = std::make_unique<QObject>();
        bool isCalled = false;
        m_client->post("auth/login.php", {}, context.get(),
                       [&](const AccountAnswer &) { isCalled = true; });
        QTRY_COMPARE(m_fixture->server.requests(m_path).size(), 1);
        if (gone == "context")
            context.reset();
        else if (gone == "client")
            m_client.reset();
        else
            m_client->abort();
        m_fixture->server.release();
        // A later request's answer comes after the one that must not be heard.
        m_fixture->server.on(m_path, {Answer::text("2")});
        AccountClient other(*m_fixture->store);
        QCOMPARE(other.postAndWait("auth/login.php", {}).text, "2");
        QVERIFY(!isCalled);
    }

    void waitingEndsWithTheClient()
    {
        m_fixture->server.on(m_path, {Answer::never()});
        connect(&m_fixture->server, &ScriptedServer::requestReceived, this, [this] {
            if (!m_fixture->server.requests(m_path).isEmpty())
                m_client.reset();
        });
        const AccountAnswer answer = m_client->postAndWait("auth/login.php", {});
        QCOMPARE(answer.text, "The request was interrupted.");
        QVERIFY(!m_client);
    }

private:
    void ask()
    {
        m_client->post("auth/login.php", {{"email", "a+b@c.de"}, {"password", "p&% ä"}}, this,
                       [this](const AccountAnswer &answer) {
                           static const QStringList kinds{"answered", "offline", "failed"};
                           m_answers += kinds.at(int(answer.kind)) + ' ' + answer.text;
                       });
    }

    const QByteArray m_path = "/teko-server/auth/login.php";
    std::unique_ptr<AccountFixture> m_fixture;
    std::unique_ptr<AccountClient> m_client;
    QStringList m_answers;
};

TEKO_TEST_MAIN(TestAccountClient)
#include "tst_accountclient.moc"
