// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "servicefixture.h"

#include <QTcpSocket>

/// Requests that the real program must not fall for.
class ServiceRequestsTest final : public ServiceCase
{
    Q_OBJECT

private slots:
    void initTestCase() { startAfresh({"--max-upload-mb", "1"}); }
    void refusesInASentence_data();
    void refusesInASentence();
    void refusesUnknownNumbersAndNames_data();
    void refusesUnknownNumbersAndNames();
    void cutUploadLeavesNothing();
    void answersPagesAndForeignRequests_data();
    void answersPagesAndForeignRequests();
    void explainsUsageErrors();
};

void ServiceRequestsTest::refusesInASentence_data()
{
    QTest::addColumn<Form>("changes");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("text");
    const QByteArray wav; // the song
    QTest::newRow("no WAV") << Form() << QByteArray("ID3 sound") << QByteArray("not a WAV file");
    QTest::newRow("empty") << Form() << QByteArray("") << QByteArray("not a WAV file");
    QTest::newRow("instrument") << Form{{"instrument", "Vocals"}} << wav
                                << QByteArray("instrument");
    QTest::newRow("format") << Form{{"extension", "exe"}} << wav << QByteArray("output format");
    QTest::newRow("run") << Form{{"version", ""}} << wav << QByteArray("kind of run");
    QTest::newRow("session") << Form{{"hash", "0123"}} << wav << unknownSession;
    QTest::newRow("token") << Form{{"accessToken", "x"}} << wav << unknownSession;
    QTest::newRow("no name") << Form{{"fileName", ""}} << wav << QByteArray("name of the file");
    QTest::newRow("too large") << Form() << m_song + QByteArray(1 << 20, 0)
                               << QByteArray("too large");
}

void ServiceRequestsTest::refusesInASentence()
{
    QFETCH(Form, changes);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, text);
    const QByteArray answer =
        m_client->upload(content.isNull() ? m_song : content, fields(changes));
    QVERIFY2(answer.contains(text), answer);
    QVERIFY(answer.endsWith('.') && answer.toInt() == 0);
    QCOMPARE(filesIn("uploads"), QStringList());
}

void ServiceRequestsTest::refusesUnknownNumbersAndNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Form>("form");
    for (const char *path : {"remains.php", "cancel.php", "download.php"}) {
        for (const char *id : {"0", "17", "-1", "x", "99999999999999999999", ""})
            QTest::addRow("%s %s", path, id) << path << Form{{"songID", id}};
    }
    QTest::newRow("demo") << "repeatDemo.php" << Form{{"songId", "17"}, {"hash", "HASH"}};
    QTest::newRow("repeat") << "repeat.php" << Form{{"uploadedFileName", "../service.db"}};
}

void ServiceRequestsTest::refusesUnknownNumbersAndNames()
{
    QFETCH(QString, path);
    QFETCH(Form, form);
    for (auto &[key, value] : form)
        value.replace("HASH", m_service->hash);
    if (path == "repeat.php")
        form = fields() + form;
    int status = 0;
    const QByteArray answer = m_client->post(path, form, &status);
    QVERIFY2(answer.endsWith('.') && answer.contains(' '), answer);
    QCOMPARE(status, 200);
}

void ServiceRequestsTest::cutUploadLeavesNothing()
{
    QTcpSocket socket;
    const QUrl url(m_service->url);
    socket.connectToHost(url.host(), quint16(url.port()));
    QVERIFY(socket.waitForConnected());
    socket.write(
        "POST /teko-server/proceed.php HTTP/1.1\r\nHost: x\r\nContent-Length: 900000\r\n"
        "Cookie: teko-session="
        + m_service->hash.toLatin1()
        + "\r\n"
          "Content-Type: multipart/form-data; boundary=B\r\n\r\n--B\r\n"
          "Content-Disposition: form-data; name=\"uploadedFile\"; filename=\"x.wav\"\r\n\r\n");
    socket.write(m_song.left(300000));
    QTRY_COMPARE(filesIn("uploads").size(), 1);
    const Form repeat = fields() + Form{{"uploadedFileName", "x.wav"}};
    QVERIFY(m_client->post("repeat.php", repeat).contains("still being uploaded"));
    socket.abort();
    QTRY_COMPARE(filesIn("uploads"), QStringList());
    QVERIFY(m_client->post("repeat.php", repeat).contains("no longer has this file"));
}

void ServiceRequestsTest::answersPagesAndForeignRequests_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *line, const char *answer) {
        QTest::newRow(line) << QByteArray(line) + " HTTP/1.1\r\nHost: x\r\n" << QByteArray(answer);
    };
    row("GET /generate_204", "HTTP/1.1 204 ");
    row("GET /helpdesk.html", "HTTP/1.1 200 ");
    row("GET /subscription.html", "HTTP/1.1 200 ");
    row("HEAD /helpdesk.html", "HTTP/1.1 200 ");
    row("GET /teko-server/redirect-training-videos.php", "HTTP/1.1 200 ");
    row("GET /teko-server/redirect-user-guide.php?a=b", "HTTP/1.1 200 ");
    row("GET /nothing", "HTTP/1.1 404 ");
    row("GET /results/", "HTTP/1.1 404 ");
    row("GET /results/../service.db", "HTTP/1.1 404 ");
    row("GET /results/%2e%2e/%2e%2e/service.db", "HTTP/1.1 404 ");
    row("GET /teko-server/remains.php", "HTTP/1.1 404 ");
    row("PUT /teko-server/remains.php", "HTTP/1.1 405 ");
    row("DELETE /nothing", "HTTP/1.1 404 ");
    QTest::newRow("an endless header") << "GET / HTTP/1.1\r\nX: " + QByteArray(50000, 'y') + "\r\n"
                                       << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("too many headers") << "GET / HTTP/1.1\r\n" + QByteArray("X: y\r\n").repeated(500)
                                      << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("too large a form")
        << "POST /teko-server/remains.php HTTP/1.1\r\nContent-Length: 70000\r\n\r\n"
            + QByteArray(70000, 'a')
        << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("no multipart") << QByteArray(
        "POST /teko-server/proceed.php HTTP/1.1\r\nContent-Length: 0\r\n")
                                  << QByteArray("HTTP/1.1 400 ");
}

void ServiceRequestsTest::answersPagesAndForeignRequests()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QTcpSocket socket;
    const QUrl url(m_service->url);
    socket.connectToHost(url.host(), quint16(url.port()));
    socket.write(request + "\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(socket.bytesAvailable() >= answer.size(), 10000);
    QCOMPARE(socket.read(answer.size()), answer);
}

void ServiceRequestsTest::explainsUsageErrors()
{
    QProcess program;
    const auto run = [&program](const QStringList &arguments) {
        program.start(QCoreApplication::applicationDirPath() + "/teko-service", arguments);
        program.waitForFinished();
        return program.exitCode();
    };
    QCOMPARE(run({"--help"}), 0);
    const QByteArray help = program.readAllStandardOutput();
    for (const char *option : {"--listen", "--data", "--embedded", "--separator", "--workers",
                               "--daily-limit", "--subscription", "--keep-days", "--max-upload-mb"})
        QVERIFY2(help.contains(option), option);
    QCOMPARE(run({"--listen", "nowhere"}), 2);
    QVERIFY(program.readAllStandardError().contains("ADDRESS:PORT"));
    QCOMPARE(run({"--listen", m_service->url.mid(7), "--data", m_dir->filePath("other")}), 1);
}

TEKO_TEST_MAIN(ServiceRequestsTest)
#include "tst_servicerequests.moc"
