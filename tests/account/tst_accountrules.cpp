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
        const Rows<QByteArray, UserReply::Kind, QString> add;
        using Kind = UserReply::Kind;
        add("subscribed", userJson("h", activePlan), Kind::User, "full");
        add("expired, numbers as texts", userJson("h", expiredPlan), Kind::User, "demo");
        add("no subscription", userJson("h"), Kind::User, "demo");
        add("subscription of another shape", userJson("h", "[1]"), Kind::User, "demo");
        add("expired as a truth value", userJson("h", R"({"id":1,"expired":true})"), Kind::User,
            "demo");
        add("a sentence", "The password is wrong.", Kind::Refusal, "demo");
        add("a number", "0", Kind::Refusal, "demo");
        add("no hash", R"({"user_id":7})", Kind::Garbled, "demo");
        add("hash of another type", R"({"hash":{"a":1}})", Kind::Garbled, "demo");
        add("half an object", userJson("h").chopped(5), Kind::Garbled, "demo");
        add("a list", "[" + userJson("h") + "]", Kind::Garbled, "demo");
        add("somebody's page", "\n<!DOCTYPE html><p>Pay for the network</p>", Kind::Garbled,
            "demo");
        add("nothing", " \n", Kind::Garbled, "demo");
        add("deep", QByteArray(5000, '['), Kind::Garbled, "demo");
    }

    void replies()
    {
        const auto [body, kind, mode] = fetchRow<QByteArray, UserReply::Kind, QString>();
        const UserReply reply = parseUserReply(QString::fromUtf8(body));
        QCOMPARE(reply.kind, kind);
        QCOMPARE(runMode(reply.user), mode);
        const bool isUser = reply.kind == UserReply::Kind::User;
        QCOMPARE(reply.accessToken, isUser ? "token-h" : "");
        QCOMPARE(reply.user.userId, isUser ? 7 : 0);
    }

    void typedTexts_data()
    {
        const Rows<QString, bool> add;
        add("e-mail", validateEmail(" a+b@host "), true);
        add("e-mail without a host", validateEmail("a@"), false);
        add("two e-mails", validateEmail("a@b c@d"), false);
        add("old short password", validatePassword("x"), true);
        add("no password", validatePassword(""), false);
        add("new password of blanks", validateNewPassword("        "), true);
        add("new short password", validateNewPassword("1234567"), false);
        add("name of blanks", validateName("  "), false);
        add("code", validateCode("a1"), true);
    }

    void typedTexts()
    {
        const auto [problem, isFine] = fetchRow<QString, bool>();
        QCOMPARE(problem.isEmpty(), isFine);
    }
};

TEKO_TEST_MAIN(TestAccountRules)
#include "tst_accountrules.moc"
