// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/account/accountcase.h"

#include <QNetworkReply>

/// The requests of the account side against a scripted server.
class TestAccountClient final : public AccountCase
{
    Q_OBJECT

private slots:
    void failures()
    {
        AccountClient client(store(), std::chrono::milliseconds(500));
        server().on(m_check, {Answer::never()});
        QCOMPARE(client.postAndWait("auth/check.php", {}).text, "Operation canceled");
        server().on("/generate_204", {Answer::never()});
        QCOMPARE(client.postAndWait("auth/check.php", {}).text, "No internet connection!");
        store().setEndpointSource({});
        store().setEmbeddedServiceLog("/x/service.log");
        const QString text = client.postAndWait("auth/check.php", {}).text;
        QVERIFY2(isLike(text, "The processing service*service.log"), qPrintable(text));
    }

    void endsInTheMiddle_data() { addNames({"deleted", "aborted"}); }

    /// Two requests, one of which somebody waits for, while the check or the answer is awaited.
    void endsInTheMiddle()
    {
        QFETCH(QString, name);
        for (const QByteArray &path : {QByteArray("/generate_204"), m_check}) {
            auto client = std::make_unique<AccountClient>(store());
            server().on(path, {Answer::text("1").held()});
            connect(&server(), &ScriptedServer::requestReceived, client.get(), [&] {
                if (server().requests(path).size() == 2 && name == "aborted")
                    client->abort();
                else if (server().requests(path).size() == 2)
                    client.reset();
            });
            bool isCalled = false;
            client->post("auth/check.php", {}, this, [&](const auto &) { isCalled = true; });
            QCOMPARE(client->postAndWait("auth/check.php", {}).text,
                     "The request was interrupted.");
            QTRY_VERIFY(!client || client->findChildren<QNetworkReply *>().isEmpty());
            server().release();
            waitForALaterAnswer();
            QVERIFY(!isCalled);
        }
    }
};

TEKO_TEST(TestAccountClient)
#include "tst_accountclient.moc"
