// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "servicefixture.h"

#include <QJsonArray>
#include <QtEndian>

/// Jobs, at the real program.
class TestServiceProcessing final : public ServiceCase
{
    Q_OBJECT

private slots:
    void processesAFile()
    {
        startAfresh();
        const QString before = inAMonth();
        const QByteArray id = m_client->upload(m_song, fields());
        QVERIFY2(id.toInt() > 0, id);
        QCOMPARE(m_client->waitForEnd(id), "-1");
        const QList<QByteArray> urls = m_client->post("download.php", {{"songID", id}}).split('|');
        QCOMPARE(urls.size(), 2);
        const QByteArray main = m_client->get(urls[0]);
        const QByteArray mix = m_client->get(urls[1]);
        QCOMPARE(main.size(), m_song.size());
        QCOMPARE(mix.size(), m_song.size());
        for (int at = 44; at < 4000; at += 2) {
            const auto sample = [at](const QByteArray &wav) {
                return qFromLittleEndian<qint16>(wav.constData() + at);
            };
            QCOMPARE(sample(main) + sample(mix), int(sample(m_song)));
        }
        QVERIFY(urls[0].endsWith("/vocals.wav") && urls[1].endsWith("/mix-without-vocals.wav"));
        QVERIFY(!m_client->get(urls[0] + "x").startsWith("RIFF"));

        // A further instrument of the same file, without sending it again.
        const Form repeat = fields({{"instrument", "drums"}}) + Form{{"uploadedFileName", "x.wav"}};
        // The cancel of an earlier request for it may come last.
        const QByteArray cancelled = m_client->post("repeat.php", repeat);
        const QByteArray again = m_client->post("repeat.php", repeat);
        m_client->post("cancel.php", {{"songID", cancelled}});
        QVERIFY2(again.toInt() > 0 && again != id, again);
        QCOMPARE(m_client->waitForEnd(again), "-1");
        const QJsonArray archive =
            QJsonDocument::fromJson(m_client->post("auth/archive.php", {{"hash", m_service->hash}}))
                .array();
        QCOMPARE(archive.size(), 2);
        const QJsonObject record = archive[1].toObject();
        QCOMPARE(record["name"].toString(), "My Söng");
        QCOMPARE(record["local_file_path"].toString(), "/home/a/My Söng.mp3");
        QCOMPARE(record["instrument"].toString() + record["extension"].toString(), "vocalsmp3");
        QCOMPARE(record["demoFile"].toString(), "no");
        QCOMPARE(record["ai_id"].toInt(), id.toInt());
        // Midnight may have passed since.
        QVERIFY(record["deleted"] == before || record["deleted"] == inAMonth());

        // A late cancel deletes nothing; a removed upload cannot be repeated.
        QCOMPARE(m_client->post("cancel.php", {{"songID", id}}),
                 "There was nothing left to cancel.");
        QCOMPARE(m_client->post("remains.php", {{"songID", id}}), "-1");
        QCOMPARE(m_client->post("removeUploaded.php", {{"fileName", "x.wav"}}), "Removed.");
        QCOMPARE(filesIn("uploads"), QStringList());
        QVERIFY(m_client->post("repeat.php", repeat).contains("no longer has this file"));
    }

    void demoCanBeMadeWhole()
    {
        startAfresh();
        const QByteArray demo = m_client->upload(m_song, fields({{"version", "demo"}}));
        QCOMPARE(m_client->waitForEnd(demo), "-1");
        const QByteArray url = m_client->post("download.php", {{"songID", demo}}).split('|')[0];
        QCOMPARE(m_client->get(url).size(), 44 + 2 * 30 * 8000);
        m_client->post("removeUploaded.php", {{"fileName", "x.wav"}});
        const Form form = {{"hash", m_service->hash}, {"extension", "flac"}, {"songId", demo}};
        const QByteArray whole = m_client->post("repeatDemo.php", form);
        QVERIFY2(whole.toInt() > 0 && whole != demo, whole);
        QCOMPARE(m_client->waitForEnd(whole), "-1");
        const QByteArray wholeUrl =
            m_client->post("download.php", {{"songID", whole}}).split('|')[0];
        QCOMPARE(m_client->get(wholeUrl).size(), m_song.size());
        const Form notADemo = {{"hash", m_service->hash}, {"extension", "flac"}, {"songId", whole}};
        QVERIFY(m_client->post("repeatDemo.php", notADemo).contains("not a demo"));
    }

    /// A separator with processes of its own, also such that leave its group.
    void endsSeparatorsWithTheirChildren_data() { addNames({"cancelled", "killed", "ended"}); }

    void endsSeparatorsWithTheirChildren()
    {
#ifdef Q_OS_LINUX
        QFETCH(QString, name);
        startAfresh({"--workers", "1", "--separator",
                     QString("sh -c 'setsid sleep %1 & sleep %1 & wait'").arg(QString(m_seconds))});
        const QByteArray first = m_client->upload(m_song, fields());
        const QByteArray second = m_client->upload(m_song, fields(), "/b/second.wav");
        QCOMPARE(m_client->upload(m_song, fields()), first); // the same request once more
        QTRY_COMPARE(sleepers(), 2);
        QVERIFY(m_client->post("remains.php", {{ "songID", second }}).toInt() > 0);
        QVERIFY(m_client->post("download.php", {{ "songID", first }}).contains("not ready"));
        if (name == "cancelled") {
            QCOMPARE(m_client->post("cancel.php", {{ "songID", second }}), "Cancelled.");
            QCOMPARE(m_client->post("cancel.php", {{ "songID", first }}), "Cancelled.");
        } else if (name == "killed") {
            // Like killall, but not other people's services.
            QProcess::execute("pkill", {"-9", "-P", m_service->processId(), "-x", "teko-service"});
            m_service->crash();
        } else {
            QVERIFY(m_service->endsCleanly());
        }
        QTRY_COMPARE_WITH_TIMEOUT(sleepers(), 0, 15000);
        restart({});
        const QByteArray reason = name == "cancelled" ? "was cancelled" : "was interrupted";
        for (const QByteArray &job : {first, second})
            QVERIFY(m_client->post("remains.php", {{ "songID", job }}).contains(reason));
        QCOMPARE(filesIn("uploads"), QStringList());
#else
        QSKIP("The processes of a tree are found on Linux only.");
#endif
    }

    void appliesTheLicence_data()
    {
        const Rows<QStringList, QString, int, QByteArray> add;
        add("active", {}, "full", 0, "");
        add("none", {"--subscription", "none"}, "full", -1, QByteArray("active subscription"));
        add("expired", {"--subscription", "expired"}, "full", 1, QByteArray("active subscription"));
        add("expired, demo", {"--subscription", "expired"}, "demo", 1, "");
    }

    void appliesTheLicence()
    {
        const auto [options, version, expired, second] =
            fetchRow<QStringList, QString, int, QByteArray>();
        startAfresh(options);
        const Form me = {{"hash", m_service->hash}};
        const QJsonObject user =
            QJsonDocument::fromJson(m_client->post("auth/check.php", me)).object();
        QCOMPARE(user["subscription"].isNull(), expired < 0);
        QCOMPARE(user["subscription"].toObject()["expired"].toInt(-1), expired);
        QCOMPARE(m_client->post("processedFilesRemains.php", me), "1000000");
        const QByteArray answer = m_client->upload(m_song, fields({{"version", version}}));
        QVERIFY2(second.isEmpty() ? answer.toInt() > 0 : answer.contains(second), answer);
    }

    void runsAnotherSeparator_data()
    {
        const Rows<QString, QByteArray> add;
        add("does its work", "sh -c 'cp \"$1\" \"$2\" && cp \"$1\" \"$3\"' x {input} {main} {mix}",
            QByteArray("-1"));
        add("fails", "sh -c 'echo error: No luck.; exit 3'", QByteArray("No luck."));
        add("does nothing", "true", QByteArray("The separator program gave no usable result."));
        add("only one result", "cp {input} {main}",
            QByteArray("The separator program gave no usable result."));
        add("is missing", "/no/such/program {input}",
            QByteArray("The separator program could not be started."));
    }

    void runsAnotherSeparator()
    {
#ifdef Q_OS_UNIX
        const auto [command, end] = fetchRow<QString, QByteArray>();
        startAfresh({"--separator", command});
        const QByteArray id = m_client->upload(m_song, fields({{ "version", "demo" }}));
        QCOMPARE(m_client->waitForEnd(id), end);
#else
        QSKIP("The commands are a Unix shell's.");
#endif
    }

private:
    static QString inAMonth()
    {
        return QDateTime::currentDateTimeUtc().addDays(30).date().toString(Qt::ISODate);
    }

    [[nodiscard]] int sleepers() const
    {
        int count = 0;
        for (const QString &pid : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
            QFile file("/proc/" + pid + "/cmdline");
            if (file.open(QIODevice::ReadOnly)
                && file.readAll() == QByteArray("sleep", 6) + m_seconds + '\0')
                ++count;
        }
        return count;
    }

    // Nobody else's processes sleep as long.
    const QByteArray m_seconds = QByteArray::number(100000 + QCoreApplication::applicationPid());
};

TEKO_TEST(TestServiceProcessing)
#include "tst_serviceprocessing.moc"
