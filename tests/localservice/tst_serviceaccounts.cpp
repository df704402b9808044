// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "servicefixture.h"

#include <QRegularExpression>

/// Accounts and their rights, at the real program.
class TestServiceAccounts final : public ServiceCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        startAfresh({"--registration", "open"});
        m_job = m_client->upload(m_song, fields());
        QCOMPARE(m_client->waitForEnd(m_job), "-1");
        m_otto = Client(m_service->url, {})
                     .json("auth/register.php",
                           {{"name", "Otto"}, {"email", "otto@b.org"}, {"password", "12345678"}});
    }

    void accountsAreKeptApart_data()
    {
        const Rows<QString, QString, Form, QByteArray> add;
        const Form job = {{"songID", m_job}};
        const Form demo = {{"songId", m_job}, {"extension", "mp3"}};
        const Form file = {{"fileName", "x.wav"}};
        const Form name = {{"name", "O"}, {"email", "otto@b.org"}};
        Form repeat = fields({{"instrument", "bass"}, {"hash", ""}});
        repeat += Form{{"uploadedFileName", "x.wav"}};
        struct Request
        {
            const char *path;
            Form form;
            QByteArray nobody, stranger, owner;
        };
        const Request requests[] = {
            {"remains.php", job, unknownFile, unknownFile, "-1"},
            {"cancel.php", job, unknownFile, unknownFile, "There was nothing left to cancel."},
            {"download.php", job, unknownFile, unknownFile,
             "../results/.+/vocals.wav.../results/.+.wav"},
            {"repeatDemo.php", demo, unknownSession, unknownFile, "This file is not a demo: .+"},
            {"repeat.php", repeat, unknownSession, "The service no longer has this file. .+",
             "\\d+"},
            {"processedFilesRemains.php", {}, unknownSession, "1000000", "1000000"},
            {"auth/archive.php", {}, unknownSession, "\\[\\]", ".*My Söng.*"},
            {"auth/check.php", {}, unknownSession, ".*otto@b.org.*", ".*local@localhost.*"},
            {"auth/update.php", name, unknownSession, ".*otto@b.org.*", ".*has no password.*"},
            {"removeUploaded.php", file, unknownSession, "Removed.", "Removed."},
            {"auth/logout.php", {}, unknownSession, "1", "1"},
        };
        for (const auto &[path, form, nobody, stranger, owner] : requests) {
            const QString row = QString(path) + ", ";
            add(row + "nobody", path, "nobody", form, nobody);
            add(row + "unknown", path, "unknown", form, unknownSession);
            add(row + "stranger", path, "stranger", form, stranger);
            add(row + "owner", path, "owner", form, owner);
        }
    }

    /// The session stands in the cookie and then in the form: that makes no difference.
    void accountsAreKeptApart()
    {
        const auto [path, who, form, answer] = fetchRow<QString, QString, Form, QByteArray>();
        const QMap<QString, QString> sessions = {{"unknown", QString(64, '0')},
                                                 {"stranger", m_otto["hash"].toString()},
                                                 {"owner", m_service->hash}};
        const QRegularExpression pattern(
            QRegularExpression::anchoredPattern(QString::fromUtf8(answer)),
            QRegularExpression::DotMatchesEverythingOption);
        Client client(m_service->url, sessions[who]);
        const QByteArray first = client.post(path, form);
        QVERIFY2(pattern.match(QString::fromUtf8(first)).hasMatch(), first);
        if (path != "auth/logout.php" || who == "owner") {
            client.session.clear();
            const QByteArray second = client.post(path, form + Form{{"hash", sessions[who]}});
            QVERIFY2(pattern.match(QString::fromUtf8(second)).hasMatch(), second);
        }
        // Nothing has happened to what is the owner's.
        QCOMPARE(m_client->post("remains.php", {{"songID", m_job}}), "-1");
        if (path != "auth/logout.php" && (path != "removeUploaded.php" || who != "owner"))
            QCOMPARE(filesIn("uploads").size(), 1);
        if (path == "auth/logout.php" && who == "stranger")
            QCOMPARE(Client(m_service->url, sessions[who]).post("auth/check.php", {}),
                     unknownSession);
    }

    void refusesBeforeTheFileArrives_data()
    {
        const Rows<QString, Form, QByteArray> add;
        const QByteArray noRoom = "The service has no room left on its disk.";
        const QString unknown(64, '0');
        add("unknown cookie", unknown, {}, unknownSession);
        add("unknown field", "", {{"hash", unknown}}, unknownSession);
        add("known, with another's token", "", {{"hash", "LOCAL"}, {"accessToken", "x"}},
            unknownSession);
        add("known", "LOCAL", {}, noRoom);
        add("no session yet", "", {}, unknownSession);
    }

    /// Without a folder to store it in, an accepted file ends with another sentence than a refused
    /// one.
    void refusesBeforeTheFileArrives()
    {
        auto [cookie, before, answer] = fetchRow<QString, Form, QByteArray>();
        for (auto &[key, value] : before)
            value.replace("LOCAL", m_service->hash);
        Client client(m_service->url, cookie.replace("LOCAL", m_service->hash));
        QDir data(m_dir->filePath("data"));
        QVERIFY(data.rename("uploads", "away"));
        const QByteArray got = client.upload(m_song, {{"instrument", "bass"}}, "y.wav", before);
        QVERIFY(data.rename("away", "uploads"));
        QCOMPARE(got, answer);
    }

    void lifeOfAnAccount()
    {
        Client other(m_service->url, {});
        Form person = {{"name", "Eva"}, {"email", "eva@b.org"}, {"password", "12345678"}};
        const QJsonObject eva = other.json("auth/register.php", person);
        QCOMPARE(eva["subscription"].toObject()["expired"].toInt(-1), 0);
        const QJsonObject again = other.json("auth/login.php", person);
        QVERIFY(again["hash"] != eva["hash"] && again["user_id"] == eva["user_id"]);
        const QString hash = eva["hash"].toString();
        const auto change = [&](const QString &password) {
            return other.post("auth/update.php",
                              {{"hash", hash},
                               {"accessToken", eva["access_token"].toString()},
                               {"name", "E"},
                               {"email", "e@b.org"},
                               {"oldPassword", "12345678"},
                               {"password", password}});
        };
        QVERIFY(change("").contains("\"e@b.org\""));
        QVERIFY(change(QString(7, 'x')).contains("at least 8"));
        QVERIFY(change(QString(1025, 'x')).contains("too long"));
        QVERIFY(other.post("auth/check.php", {{"hash", hash}}).contains("\"E\""));
        // The address of this computer's own account is reserved; others look like what they are.
        for (const char *email : {"LOCAL@localhost", "gro\u202e@b.org", "a\u0085@b.org"}) {
            person[1].second = email;
            for (const char *path : {"auth/register.php", "auth/update.php"})
                QCOMPARE(other.post(path, person + Form{{"hash", hash}}),
                         "This is not an e-mail address.");
        }

        // The answer does not reveal who has an account.
        for (const char *email : {"nobody@b.org", "e@b.org"})
            QCOMPARE(other.post("auth/recover.php", {{"email", email}}), "1");
        QTRY_VERIFY(m_service->log().contains("code for e@b.org is "));
        QCOMPARE(m_service->log().count("code for e@b.org is"), 1);
    }

    void limitsGuesses()
    {
        const QJsonObject user =
            m_client->json("auth/login.php", {{"email", "otto@b.org"}, {"password", "12345678"}});
        Client otto(m_service->url, user["hash"].toString());
        const auto change = [](Client &client, const QString &email, const QString &oldPassword) {
            return client.post("auth/update.php",
                               {{"name", "O"}, {"email", email}, {"oldPassword", oldPassword}});
        };
        QVERIFY(change(*m_client, "Local@localhost", "").contains("\"O\""));
        QVERIFY(change(*m_client, "l@b.org", "").contains("has no password"));
        QVERIFY(change(otto, "otto2@b.org", "").contains("old password is wrong"));
        for (int i = 0; i < 10; ++i)
            (void)change(otto, QString("otto%1@b.org").arg(i), "12345678");
        QVERIFY(change(otto, "otto@b.org", "12345678").contains("Too many tries"));

        // Codes that somebody asks for do not count as sign-ins.
        QByteArray refusal;
        for (int i = 0; i < 31; ++i)
            refusal = otto.post("auth/recover.php", {{"email", "otto9@b.org"}});
        QVERIFY2(refusal.contains("Too many tries"), refusal);
        const auto tryPassword = [this](const QString &email, const QString &password = "wrong") {
            return m_client->post("auth/login.php", {{"email", email}, {"password", password}});
        };
        const QByteArray wrong = tryPassword("otto9@b.org");
        QVERIFY(wrong.contains("is wrong"));
        QCOMPARE(tryPassword("nobody@localhost"), wrong);
        for (int i = 1; i < 10; ++i)
            QCOMPARE(tryPassword("OTTO9@b.org"), wrong);
        QVERIFY(tryPassword("otto9@b.org", "12345678").contains("Too many tries"));
        QCOMPARE(tryPassword("nobody@localhost"), wrong);
        const auto askFor = [](Client &client, const QByteArray &number) {
            return client.post("remains.php", {{"songID", number}});
        };
        Client nobody(m_service->url, {});
        for (int i = 0; i < 60; ++i)
            (void)askFor(nobody, "7");
        QVERIFY(askFor(nobody, m_job).contains("Too many requests"));
        // The guesses of others at the same address do not count against the owner.
        QCOMPARE(askFor(*m_client, m_job), "-1");
    }

private:
    QByteArray m_job; // of the local account, from the upload "x.wav"
    QJsonObject m_otto; // another account
};

TEKO_TEST(TestServiceAccounts)

#include "tst_serviceaccounts.moc"
