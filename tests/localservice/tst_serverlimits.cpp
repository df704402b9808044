// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/refusal.h"
#include "localservice/server/httpserver.h"
#include "stores.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <Poco/Net/NetException.h>
#include <Poco/Net/ServerSocket.h>

#include <fstream>

using namespace std::chrono_literals;

namespace {

/// A server in this process, with stores of its own.
struct Server
{
    explicit Server(const QTemporaryDir &dir, const ConnectionLimits &limits = {},
                    const Licence &licence = {})
        : stores(dir)
        , runner(stores.run(copyTwice))
        , authorizer(stores.accounts, stores.jobs)
        , processing(stores.database, stores.accounts, stores.uploads, stores.jobs, *runner,
                     authorizer, arriving, licence, "..")
        , accounts(stores.accounts, stores.jobs, authorizer, licence, 30)
        , status(stores.database, stores.folder, 1)
        , http(std::in_place, settingsWith(limits),
               Backend{processing, accounts, status, stores.jobs, arriving, stores.folder,
                       std::uint64_t{1} << 40})
        , session(stores.accounts.localSession())
    { }

    static ServerSettings settingsWith(const ConnectionLimits &limits)
    {
        ServerSettings settings;
        settings.port = 0;
        settings.limits = limits;
        return settings;
    }
    [[nodiscard]] std::string host() const { return http->url().substr(7); }
    [[nodiscard]] Poco::Net::StreamSocket connect(const std::string &request = {}) const
    {
        Poco::Net::StreamSocket socket{Poco::Net::SocketAddress(host())};
        socket.setReceiveTimeout(Poco::Timespan(20, 0));
        socket.sendBytes(request.data(), int(request.size()));
        return socket;
    }
    /// What comes before the connection ends, its beginning only; and how much it was.
    static std::string replyOf(Poco::Net::StreamSocket socket, std::size_t *size = nullptr)
    {
        std::string reply;
        std::size_t total = 0;
        std::vector<char> bytes(1 << 16);
        try {
            while (const int got = socket.receiveBytes(bytes.data(), int(bytes.size()))) {
                total += std::size_t(got);
                if (reply.size() < bytes.size())
                    reply.append(bytes.data(), std::size_t(got));
            }
        } catch (const Poco::Net::NetException &) {
            reply += "(aborted)";
        }
        if (size)
            *size = total;
        return reply;
    }
    [[nodiscard]] std::string get(const std::string &path) const
    {
        return replyOf(connect("GET " + path + " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n"));
    }
    /// The beginning of an upload that announces 10 MB.
    [[nodiscard]] std::string upload(const std::string &cookie) const
    {
        return "POST /teko-server/proceed.php HTTP/1.1\r\nHost: " + host()
            + "\r\nContent-Length: 10000000\r\nCookie: teko-session=" + cookie
            + "\r\nContent-Type: multipart/form-data; boundary=B\r\n\r\n--B\r\n"
              "Content-Disposition: form-data; name=\"uploadedFile\"; filename=\"x\"\r\n\r\nsound";
    }
    [[nodiscard]] std::size_t uploadsOnDisk() const
    {
        return std::size_t(
            std::distance(std::filesystem::directory_iterator(stores.folder.upload("")), {}));
    }

    Stores stores;
    std::unique_ptr<JobRunner> runner;
    Authorizer authorizer;
    ArrivingFiles arriving;
    Processing processing;
    Accounts accounts;
    ServiceStatus status;
    std::optional<HttpServer> http;
    std::string session;
};

} // namespace

/// What clients may do at the same time, and how slowly.
class TestServerLimits final : public TestCase
{
    Q_OBJECT

private slots:
    void init()
    {
        TestCase::init();
        initialiseSecrets();
        m_dir = std::make_unique<QTemporaryDir>();
    }

    void abortsSlowClients_data() { addNames({"form", "upload", "stranger's upload", "reader"}); }

    /// Here no transfer is fast enough.
    void abortsSlowClients()
    {
        QFETCH(QString, name);
        Server server(*m_dir,
                      {.requestTimeout = 200ms,
                       .replyTimeout = 300ms,
                       .rateWindow = 300ms,
                       .minWindowBytes = std::int64_t{1} << 40});
        if (name == "form") {
            const std::string form =
                "POST /teko-server/auth/register.php HTTP/1.1\r\nHost: " + server.host()
                + "\r\nContent-Type: application/x-www-form-urlencoded"
                  "\r\nContent-Length: 43\r\n\r\n"
                  "name=Eva&email=eva@b.org&password=12345678";
            const std::string reply = Server::replyOf(server.connect(form));
            QVERIFY2(reply.find(" 200 ") == std::string::npos, reply.c_str());
            server.http.reset();
            QVERIFY(!server.stores.accounts.openRecovery("eva@b.org"));
        } else if (name == "reader") {
            const std::size_t got = readResult(server);
            QVERIFY2(got > 1000 && got < resultBytes, std::to_string(got).c_str());
        } else {
            const std::string session = name == "upload" ? server.session : "";
            const std::string reply = Server::replyOf(server.connect(server.upload(session)));
            QVERIFY2(reply.find(" 200 ") == std::string::npos, reply.c_str());
            QTRY_COMPARE(server.uploadsOnDisk(), std::size_t(0));
        }
    }

    void findsRoomForShortRequests_data()
    {
        const Rows<int, int> add; // how many accounts, and uploads stored
        add("idle connections", 0, 0);
        add("strangers' uploads", 0, 0);
        add("one account's uploads", 1, 2);
        add("four accounts' uploads", 4, 6);
    }

    /// With 12 connections and 8 transfers, an address has 9 and 6, and an account 2.
    void findsRoomForShortRequests()
    {
        const auto [accounts, uploads] = fetchRow<int, int>();
        const auto stored = std::size_t(uploads);
        Server server(*m_dir, {.connections = 12, .transfers = 8});
        const bool isIdle = QTest::currentDataTag() == QByteArray("idle connections");
        std::vector<Poco::Net::StreamSocket> held;
        for (int i = 0; i < 20 && accounts == 0; ++i)
            held.push_back(server.connect(isIdle ? "" : server.upload("")));
        std::vector<std::string> sessions;
        for (int i = 0; i < accounts; ++i)
            sessions.push_back(server.stores.accounts.openSession(
                server.stores.addAccount(std::to_string(i) + "@b")));
        for (std::size_t i = 0; i < 8 && accounts > 0; ++i)
            held.push_back(server.connect(server.upload(sessions[i % sessions.size()])));
        QTRY_COMPARE(server.uploadsOnDisk(), stored);
        for (int i = 0; i < 20; ++i) {
            const std::string reply = server.get("/generate_204");
            QVERIFY2(reply.find(" 204 ") != std::string::npos, (std::to_string(i) + reply).c_str());
        }
        QCOMPARE(server.uploadsOnDisk(), stored);
    }

    void keepsAShareForEachAddress_data()
    {
        const Rows<QString, QString, bool> add;
        add("connections that say nothing", "reading", "", true);
        add("replies that are not read", "replying", "", true);
        add("transfers", "transferring", "", false);
        add("transfers through the proxy", "transferring", "127.0.0.1", true);
    }

    /// Of 4 connections an address has 3. Does the fourth one find room?
    void keepsAShareForEachAddress()
    {
        const auto [held, proxy, isAdmitted] = fetchRow<QString, QString, bool>();
        Connections connections({.connections = 4}, proxy.toStdString());
        const Poco::Net::ServerSocket listener(Poco::Net::SocketAddress("127.0.0.1:0"));
        const std::string client = proxy.isEmpty() ? "127.0.0.0" : "192.0.2.7";
        std::vector<Poco::Net::StreamSocket> sockets;
        const auto open = [&] {
            sockets.emplace_back(listener.address());
            sockets.push_back(Poco::Net::ServerSocket(listener).acceptConnection());
            return connections.open(sockets.back());
        };
        for (int i = 0; i < 3; ++i) {
            QVERIFY(open());
            const Connections::Id id = sockets.back().impl();
            QVERIFY(held == "reading" || connections.requestRead(id));
            QVERIFY(held != "transferring" || connections.beginTransfer(id, client, 1));
        }
        QCOMPARE(open(), isAdmitted);
    }

    void limitsWhatAnAccountKeeps_data()
    {
        // A file takes 16044 bytes, and its results twice as many.
        const Rows<std::int64_t, int, QString> add;
        add("no limit", 0, 0, "");
        add("room for all", 48132, 0, "");
        add("no room for the results", 48131, 0, "no room left");
        add("no room for the file", 16043, 0, "no room left");
        add("the day's last file", 0, 2, "");
        add("a file too many today", 0, 1, "already processed 1 files today");
    }

    void limitsWhatAnAccountKeeps()
    {
        const auto [bytes, files, refusal] = fetchRow<std::int64_t, int, QString>();
        Server server(*m_dir, {}, {.filesPerDay = files, .accountBytes = bytes});
        const RequestContext context{"", server.session};
        const std::int64_t account = server.processing.uploadAccount(m_form, context);
        server.stores.accounts.countProcessed(account);
        QByteArray answer;
        try {
            ReceivedFile file(server.stores.folder.upload(""), 1 << 20, server.arriving);
            file.begin(account, "x.wav", server.processing.uploadRoom(account));
            file.write(readAll(songFile()));
            file.finish();
            answer = QByteArray::fromStdString(server.processing.proceed(m_form, context, file));
            // Another job of the file needs as much room again.
            if (bytes > 0)
                QVERIFY_EXCEPTION_THROWN((void)server.processing.repeat(m_form, context), Refusal);
        } catch (const Refusal &sentence) {
            answer = sentence.what();
        }
        QVERIFY2(refusal.isEmpty() ? answer.toInt() > 0 : answer.contains(refusal.toUtf8()),
                 answer);
        QCOMPARE(server.uploadsOnDisk(), std::size_t(refusal.isEmpty() ? 1 : 0));
    }

private:
    static constexpr std::size_t resultBytes = std::size_t{1} << 33;

    /// What a client gets of a large result.
    std::size_t readResult(Server &server)
    {
        const Job job = *server.stores.jobs.find(
            server.stores.addJob(server.stores.addAccount("a@b"), "a.wav"));
        server.runner->notifyJobAdded();
        if (!QTest::qWaitFor([&] { return server.stores.stateOf(job.id) == JobState::Ready; }))
            return 0;
        std::filesystem::resize_file(server.stores.folder.mainResult(job.token), resultBytes);
        std::size_t size = 0;
        Server::replyOf(server.connect("GET /results/" + job.token + "/drums.wav HTTP/1.1\r\nHost: "
                                       + server.host() + "\r\n\r\n"),
                        &size);
        return size;
    }
    [[nodiscard]] std::string songFile() const
    {
        const std::string song = m_dir->filePath("song.wav").toStdString();
        writeWav(song, {1, 8000, 16, 8000}, std::vector<std::int32_t>(8000));
        return song;
    }
    static std::string readAll(const std::string &path)
    {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    const Fields m_form = Fields::fromForm("instrument=bass&version=full&fileName=a&extension=mp3"
                                           "&uploadedFileName=x.wav");
};

TEKO_TEST(TestServerLimits)

#include "tst_serverlimits.moc"
