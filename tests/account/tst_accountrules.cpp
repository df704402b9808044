// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/credentialsfile.h"
#include "account/formrules.h"
#include "account/licencegate.h"
#include "account/userreply.h"
#include "tests/account/accountcase.h"
#include "tests/support/smalldisk.h"

#include <QRegularExpression>

/// The decisions of the account side, on values and one file alone.
class TestAccountRules final : public TestCase
{
    Q_OBJECT

private slots:
    void replies_data()
    {
        using Kind = UserReply::Kind;
        const Rows<QByteArray, Kind, QString> add;
        add("subscribed", userJson("h", activePlan), Kind::User, "full");
        add("expired", userJson("h", R"({"id":"3","expired":"1"})"), Kind::User, "demo");
        add("no subscription", userJson("h"), Kind::User, "demo");
        add("a sentence", "The password is wrong.", Kind::Refusal, "demo");
        add("hash of another type", R"({"hash":{"a":1}})", Kind::Malformed, "demo");
        add("half an object", userJson("h").chopped(5), Kind::Malformed, "demo");
        add("another page", "\n<!DOCTYPE html><p>Pay</p>", Kind::Malformed, "demo");
        add("nothing", " \n", Kind::Malformed, "demo");
    }

    void replies()
    {
        const auto [body, kind, mode] = fetchRow<QByteArray, UserReply::Kind, QString>();
        const UserReply reply = parseUserReply(QString::fromUtf8(body));
        QCOMPARE(reply.kind, kind);
        QCOMPARE(runMode(reply.user), mode);
    }

    void typingErrors()
    {
        for (const QString &problem :
             {validateEmail("a@"), validateEmail("a@b c@d"), validatePassword(""),
              validateNewPassword("1234567"), validateName("  "), validateCode(" ")})
            QVERIFY(!problem.isEmpty());
    }

    /// An unusable file is renamed, then there are no credentials. A full disk keeps the old file,
    /// unless it would sign in a user who has signed out.
    void credentials()
    {
        const QTemporaryDir folder;
        const SmallDisk disk(folder.path());
        const QString path = folder.filePath("credentials.dat");
        const QByteArray key = credentialsKey("text", "machine");
        const CredentialsFile file(folder.path(), key);
        const Credentials sample{"key-1234", "ann@b.de", "hash-5678", "token-9", true, "https://s"};
        QByteArray changed = sealCredentials(sample, key);
        changed.back() = char(changed.back() ^ 1);
        const QByteArray other = sealCredentials(sample, credentialsKey("text", "other"));
        for (const QByteArray &content : {changed.left(10), changed, other}) {
            writeFile(path, content);
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be used.*kept aside"));
            QCOMPARE(file.read(), std::nullopt);
            QVERIFY(!QFile::exists(path) && readFile(path + ".damaged") == content);
        }
        QVERIFY(file.write(sample) && file.read() == sample);
        QVERIFY(!readFile(path).contains("hash-5678"));
        QVERIFY(isPrivate(path));

        if (!disk.isMounted())
            QSKIP("Mounting a small disk takes the rights of an administrator.");
        QFile filler(folder.filePath("filler"));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QVERIFY(filler.write(QByteArray(2'000'000, 'x')) > 0);
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
        QVERIFY(!file.write({}));
        QCOMPARE(file.read(), sample);
        file.overwrite({});
        QCOMPARE(file.read(), Credentials());
    }
};

TEKO_TEST(TestAccountRules)
#include "tst_accountrules.moc"
