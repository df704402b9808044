// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/formrules.h"
#include "account/licencegate.h"
#include "account/userreply.h"
#include "tests/account/accountfixture.h"

/// The decisions of the account side, without anything around them.
class TestAccountRules final : public TestCase
{
    Q_OBJECT

private slots:
    void replies_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<UserReply::Kind>("kind");
        QTest::addColumn<QString>("mode");
        using Kind = UserReply::Kind;
        const auto row = [](const char *name, const QByteArray &body, Kind kind,
                            const char *mode = "demo") {
            QTest::newRow(name) << body << kind << mode;
        };
        row("subscribed", userJson("h", activePlan), Kind::User, "full");
        row("expired, numbers as texts", userJson("h", expiredPlan), Kind::User);
        row("no subscription", userJson("h"), Kind::User);
        row("subscription of another shape", userJson("h", "[1]"), Kind::User);
        row("expired as a truth value", userJson("h", R"({"id":1,"expired":true})"), Kind::User);
        row("a sentence", "The password is wrong.", Kind::Refusal);
        row("a number", "0", Kind::Refusal);
        row("no hash", R"({"user_id":7})", Kind::Garbled);
        row("hash of another type", R"({"hash":{"a":1}})", Kind::Garbled);
        row("half an object", userJson("h").chopped(5), Kind::Garbled);
        row("a list", "[" + userJson("h") + "]", Kind::Garbled);
        row("somebody's page", "\n<!DOCTYPE html><p>Pay for the network</p>", Kind::Garbled);
        row("nothing", " \n", Kind::Garbled);
        row("deep", QByteArray(5000, '['), Kind::Garbled);
    }

    void replies()
    {
        QFETCH(QByteArray, body);
        const UserReply reply = parseUserReply(QString::fromUtf8(body));
        QTEST(reply.kind, "kind");
        QTEST(runMode(reply.user), "mode");
        const bool isUser = reply.kind == UserReply::Kind::User;
        QCOMPARE(reply.accessToken, isUser ? "token-h" : "");
        QCOMPARE(reply.user.userId, isUser ? 7 : 0);
    }

    void typedTexts_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<bool>("isFine");
        QTest::newRow("e-mail") << problemWithEmail(" a+b@host ") << true;
        QTest::newRow("e-mail without a host") << problemWithEmail("a@") << false;
        QTest::newRow("two e-mails") << problemWithEmail("a@b c@d") << false;
        QTest::newRow("old short password") << problemWithPassword("x") << true;
        QTest::newRow("no password") << problemWithPassword("") << false;
        QTest::newRow("new password of blanks") << problemWithNewPassword("        ") << true;
        QTest::newRow("new short password") << problemWithNewPassword("1234567") << false;
        QTest::newRow("name of blanks") << problemWithName("  ") << false;
        QTest::newRow("code") << problemWithCode("a1") << true;
    }

    void typedTexts()
    {
        QFETCH(QString, problem);
        QTEST(problem.isEmpty(), "isFine");
    }
};

TEKO_TEST_MAIN(TestAccountRules)
#include "tst_accountrules.moc"
