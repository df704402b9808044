// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/tekoserver.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedservice.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <functional>
#include <memory>

using Answer = ScriptedAnswer;
using Fetch = std::function<void(TekoServer &)>;

/// Results on their way from a scripted service to the disk.
class TestDownloads final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        m_service = std::make_unique<ScriptedService>();
        UserRecord user;
        user.hash = "hash";
        m_service->store.setUser(user);
        m_client = std::make_unique<TekoServer>(m_service->store);
        m_events.clear();
        const auto percents = [this](const QString &name) {
            return [this, name](double value) { m_events += name + QString::number(value); };
        };
        connect(m_client.get(), &TekoServer::downloadingFirst, this, percents("first "));
        connect(m_client.get(), &TekoServer::downloadingSecond, this, percents("second "));
        connect(m_client.get(), &TekoServer::showError, this,
                [this](const QString &text) { m_events += "error " + text; });
    }

    void cleanup() { m_client.reset(); }

    void downloadsResults_data()
    {
        const Rows<Fetch, QByteArray, QByteArray> add;
        const QByteArray one(3'000'000, '1');
        const QByteArray two(2'000'000, '2');
        const QByteArray none = "no such file";
        const Fetch fetchFirst = [this](TekoServer &client) {
            client.download(5, path("1.wav"), false);
        };
        const Fetch fetchSecond = [this](TekoServer &client) {
            client.download(5, path("1.wav"), true);
        };
        const Fetch fetchBoth = [this](TekoServer &client) {
            client.downloadBoth(5, path("1.wav"), path("2.wav"), 3'000'000);
        };
        add("first", fetchFirst, one, none);
        add("second", fetchSecond, two, none);
        add("both", fetchBoth, one, two);
    }

    void downloadsResults()
    {
        const auto [fetch, first, second] = fetchRow<Fetch, QByteArray, QByteArray>();
        writeFile(path("1.wav"), "earlier result");
        server().on("/a", {Answer::text(QByteArray(3'000'000, '1'))});
        server().on("/b", {Answer::raw("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(2'000'000, '2'))});
        fetch(*m_client);
        QVERIFY(!QFile::exists(path("1.wav")));
        const qsizetype files = second.startsWith('2') ? 2 : 1;
        QTRY_COMPARE(m_events.filter(" 100").size(), files);
        QVERIFY(readFile(path("1.wav")) == first);
        QVERIFY(readFile(path("2.wav")) == second);
        QVERIFY(m_events.contains("first 100"));
        QCOMPARE(m_events.filter("error"), QStringList());
        QCOMPARE(server().requests().last().header("Accept-Encoding"), "identity");
        // Results may lie anywhere, and their addresses open them.
        QCOMPARE(server().requests().last().header("Cookie"), "");
    }

    void refusesBadDownload_data()
    {
        const Rows<QByteArray, ScriptedAnswer, QString> add;
        const QByteArray here = "/a|/b";
        const QString notWhole = "The file did not arrive whole.";
        add("cut", here, Answer::wrongLength("half", "8"), "Connection closed");
        add("length overflows", here, Answer::wrongLength("12", "99999999999999999999"), notWhole);
        add("negative length", here, Answer::wrongLength("12", "-5"), notWhole);
        add("broken chunk", here,
            Answer::raw(
                "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nab\r\n0\r\n\r\n"),
            notWhole);
        add("reset", here, Answer::cut(Answer::Ending::Reset), "Connection closed");
        add("redirected", here, Answer::redirect(QUrl("/b")),
            "The service answered with a redirect, which is not followed.");
        add("part of it", here, Answer::text("part", 206), notWhole);
        add("compressed", here, Answer::text("\x1f\x8b", 200, {"Content-Encoding: gzip"}),
            "The file arrived in an encoding that was not asked for.");
        const QString noAddress = "The service gave no usable address of the file.";
        for (const QByteArray urls : {"|/b", "file:///etc/passwd|/b", "ftp://x/1|/b", "../1|/b"})
            add(urls, urls, Answer::text("x"), noAddress);
    }

    void refusesBadDownload()
    {
        auto [urls, answer, reason] = fetchRow<QByteArray, ScriptedAnswer, QString>();
        if (urls.startsWith('/'))
            urls = server().url("/a").toEncoded() + urls.mid(2);
        server().on(m_service->download, {Answer::text(urls)});
        server().on("/a", {answer});
        m_client->download(5, path("1.wav"), false);
        QTRY_COMPARE(m_events.filter("error"), QStringList{"error Download error:\n\n" + reason});
        QVERIFY(!m_events.contains("first 100"));
        QCOMPARE(m_service->saved(), QStringList());
    }

    void reportsUnwritableTarget()
    {
        server().on("/a", {Answer::text("sound")});
        m_client->download(5, path("none/1.wav"), false);
        const QString event = "error Failed to open file for writing:\n\n" + path("none/1.wav");
        QTRY_COMPARE(m_events, QStringList{event});
    }

    void reportsFullDisk_data()
    {
        const Rows<int, int> add;
        // The last one fails only when its buffered bytes are flushed.
        add("far too much", 3'000'000, 2'048);
        add("a part fits", 3'000'000, 400'000);
        add("a little too much", 3'000, 2'048);
    }

    void reportsFullDisk()
    {
        const auto [size, room] = fetchRow<int, int>();
        const SmallDisk disk(path("disk"));
        if (!disk.isMounted())
            QSKIP("Mounting a small disk takes the rights of an administrator.");
        writeFile(path("disk/filler"), QByteArray(1'048'576 - room, 'x'));
        server().on("/a", {Answer::text(QByteArray(size, 'x'))});
        m_client->download(5, path("disk/1.wav"), false);
        QTRY_COMPARE(m_events.filter("error"),
                     QStringList{"error Download error:\n\nNo space left on device"});
        QCOMPARE(filesIn(path("disk")), QStringList{"filler"});
    }

private:
    ScriptedServer &server() { return m_service->server; }
    [[nodiscard]] QString path(const QString &name) const
    {
        return m_service->path("Save/" + name);
    }

    std::unique_ptr<ScriptedService> m_service;
    std::unique_ptr<TekoServer> m_client;
    QStringList m_events;
};

TEKO_TEST_MAIN(TestDownloads)
#include "tst_downloads.moc"
