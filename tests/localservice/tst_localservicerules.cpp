// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/signinguard.h"
#include "localservice/http/clientaddress.h"
#include "localservice/http/fields.h"
#include "localservice/http/hostpolicy.h"
#include "localservice/http/multipart.h"
#include "localservice/jobs/commandseparator.h"
#include "localservice/jobs/jobschedule.h"
#include "localservice/jobs/separatoroutput.h"
#include "localservice/options.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace localservice;

namespace {

// Records what a parser reports: "name(filename)=content;" for every part.
class PartList final : public MultipartParser::Sink
{
public:
    void beginPart(const std::string &name, const std::string &fileName) override
    {
        text += name + "(" + fileName + ")=";
    }
    void partData(std::string_view bytes) override { text += bytes; }
    void endPart() override { text += ";"; }
    std::string text;
};

QByteArray part(const QByteArray &disposition, const QByteArray &content)
{
    return "--B\r\nContent-Disposition: form-data; " + disposition + "\r\n\r\n" + content + "\r\n";
}

} // namespace

class TestLocalServiceRules final : public TestCase
{
    Q_OBJECT

private slots:
    void parsesUploads_data()
    {
        const Rows<QByteArray, QByteArray> add;
        const QByteArray end = "--B--\r\n";
        add("a field", part("name=\"a\"", "one") + end, QByteArray("a()=one;"));
        add("an empty field", part("name=\"a\"", "") + end, QByteArray("a()=;"));
        add("a file, then a field",
            part("name=\"f\"; filename=\"/tmp/x.wav\"", "1\r\n--2\r\n") + part("name=\"b\"", "3")
                + end,
            QByteArray("f(/tmp/x.wav)=1\r\n--2\r\n;b()=3;"));
        add("a path with quotation marks and backslashes",
            part("name=\"f\"; filename=\"C:\\my \"best\" songs\\x.wav\"", "1") + end,
            QByteArray("f(C:\\my \"best\" songs\\x.wav)=1;"));
        add("further headers, other case",
            "--B\r\nContent-Type: text/plain\r\ncontent-disposition: form-data; "
            "name=\"a\"\r\n\r\n1\r\n"
                + end,
            QByteArray("a()=1;"));
        add("a preamble and an epilogue", "before\r\n" + part("name=\"a\"", "1") + end + "after",
            QByteArray("a()=1;"));
        add("nearly a boundary", part("name=\"a\"", "\r\n\r\n-\r\n--\r\r\n") + end,
            QByteArray("a()=\r\n\r\n-\r\n--\r\r\n;"));
    }

    void parsesUploads()
    {
        const auto [body, parts] = fetchRow<QByteArray, QByteArray>();
        // In pieces of every size, so that each boundary is cut at each place.
        for (qsizetype size = 1; size <= body.size(); ++size) {
            PartList list;
            MultipartParser parser("B", list);
            for (qsizetype at = 0; at < body.size(); at += size)
                parser.feed(body.mid(at, size).toStdString());
            QCOMPARE(QByteArray::fromStdString(list.text), parts);
            QVERIFY(parser.isComplete());
        }
    }

    void refusesBrokenUploads_data()
    {
        const Rows<QByteArray, bool> add;
        add("no closing boundary", part("name=\"a\"", "1"), false);
        add("nothing", "", false);
        add("no name at all", "--B\r\nX: y\r\n\r\n1\r\n--B--", true);
        add("a name without its end", part("name=\"a", "1"), true);
        add("junk behind the boundary", "--Bx\r\n", true);
        add("an endless header", "--B\r\nX: " + QByteArray(100000, 'y'), true);
    }

    void refusesBrokenUploads()
    {
        const auto [body, throws] = fetchRow<QByteArray, bool>();
        PartList list;
        MultipartParser parser("B", list);
        if (throws)
            QVERIFY_EXCEPTION_THROWN(parser.feed(body.toStdString()), BadRequest);
        else
            parser.feed(body.toStdString());
        QVERIFY(!parser.isComplete());
    }

    void readsForms()
    {
        for (const auto &[body, a] : {std::pair("b=2&a=1", "1"),
                                      {"a=%C3%A4%26+%3d", "ä& ="},
                                      {"b=2", ""},
                                      {"a&b=1", ""},
                                      {"&&a=1&", "1"},
                                      {"a=b=c", "b=c"}})
            QCOMPARE(Fields::fromForm(body)["a"], std::string(a));
    }

    void limitsForms()
    {
        std::string many;
        for (int i = 0; i < 100; ++i)
            many.append("f").append(std::to_string(i)).append("=1&");
        for (const std::string &body :
             {std::string("a=%"), std::string("a=%4"), std::string("a=%zz"), std::string("a=%00"),
              std::string("a=%ff%fe"), std::string("a=") + std::string(Fields::maxBytes, 'x'),
              many})
            QVERIFY_EXCEPTION_THROWN((void)Fields::fromForm(body), BadRequest);
        QCOMPARE(baseName("/a/b\\..\\c d.wav"), std::string("c d.wav"));
        QCOMPARE(baseName("../"), std::string());
    }

    void readsOptions_data()
    {
        const Rows<QString> add;
        add("", "127.0.0.1 8750 active 0 30");
        add("--embedded", "127.0.0.1 0 active 0 30");
        add("--embedded --listen 0.0.0.0:99", "0.0.0.0 99 active 0 30");
        add("--listen=[::1]:0 --subscription expired", "::1 0 expired 0 30");
        add("--daily-limit 10 --keep-days=7 --subscription none", "127.0.0.1 8750 none 10 7");
        for (const char *wrong :
             {"--listen localhost", "--listen :1", "--listen a:65536", "--listen", "--workers 0",
              "--workers x", "--keep-days 1x", "--subscription maybe", "--embedded=1", "--nonsense",
              "file.wav", "--separator='open", "--data="})
            add(wrong, "");
    }

    void readsOptions()
    {
        const auto [result] = fetchRow<QString>();
        std::vector<std::string> words;
        for (const QString &argument :
             QString(QTest::currentDataTag()).split(' ', Qt::SkipEmptyParts))
            words.push_back(argument.toStdString());
        if (result.isEmpty()) {
            QVERIFY_EXCEPTION_THROWN((void)parseOptions(words), UsageError);
            return;
        }
        const Options options = parseOptions(words);
        const QStringList states = {"active", "none", "expired"};
        QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(QString::fromStdString(options.server.host))
                     .arg(options.server.port)
                     .arg(states[int(options.licence.subscription)])
                     .arg(options.licence.filesPerDay)
                     .arg(options.keepDays),
                 result);
    }

    void splitsCommands()
    {
        using Words = std::vector<std::string>;
        for (const auto &[command, words] :
             {std::pair(" prog  -x\t{input} ", Words{"prog", "-x", "{input}"}),
              {"\"my prog\" 'a \"b\"' ''", {"my prog", "a \"b\"", ""}},
              {"a'b c'd", {"ab cd"}},
              {"a;b $(c) `d`", {"a;b", "$(c)", "`d`"}}})
            QCOMPARE(splitCommand(command), words);
        for (const char *command : {"a 'b", "  ", "a {input"})
            QVERIFY_EXCEPTION_THROWN((void)splitCommand(command), std::invalid_argument);
    }

    void startsJobsInTurn_data()
    {
        const Rows<QString, QString> add;
        // Each job is a letter, its account's, in the order of their arrival.
        add("one account", "aaa", "1 2 3");
        add("accounts take turns", "aaabbc", "1 4 6 2 5 3");
        add("who was last comes last", "zzab", "3 4 1 2");
        add("none", "", "");
    }

    void startsJobsInTurn()
    {
        const auto [accounts, order] = fetchRow<QString, QString>();
        std::vector<QueuedJob> queued;
        for (const QChar account : accounts)
            queued.push_back({int(queued.size()) + 1, account.unicode(), 1});
        QStringList ids;
        for (const QueuedJob &job : startOrder(queued, {{'z', 7}, {'a', 0}}))
            ids << QString::number(job.id);
        QCOMPARE(ids.join(' '), order);
    }

    void readsTheSeparatorsOutput()
    {
        std::atomic<double> progress = 0;
        QStringList logged;
        SeparatorOutput output(progress, [&logged](std::string_view line) {
            logged << QString::fromUtf8(line.data(), qsizetype(line.size()));
        });
        for (const char *piece :
             {"prog", "ress 0.25\r\nprogress x\nerr", "or: No \x1bluck.\n", "end"})
            output.feed(piece);
        output.finish();
        QCOMPARE(progress.load(), 0.25);
        QCOMPARE(output.error(), std::string("No  luck."));
        QCOMPARE(logged, QStringList({"progress x", "error: No \x1bluck.", "end"}));
        output.feed("progress 7\n");
        QCOMPARE(progress.load(), 1.0);
        output.feed(std::string(100000, 'x') + "\n");
        QVERIFY(logged.last().size() < 5000);
    }

    void keepsItsNames_data()
    {
        const Rows<QString, QString, QString> add;
        // Which of the services below accept it.
        add("localhost", "localhost:8750", "", "local open proxied by TLS");
        add("upper case", "LOCALHOST:8750", "", "local open proxied by TLS");
        add("IPv4", "127.0.0.1:8750", "", "local open proxied by TLS");
        add("IPv6", "[::1]:8750", "", "local open proxied by TLS");
        add("another port", "localhost:8751", "", "open proxied by TLS");
        add("no port", "127.0.0.1", "", "open proxied by TLS");
        add("an address of the network", "192.0.2.1:8750", "", "open proxied by TLS");
        add("another name", "evil.example:8750", "", "by TLS");
        add("this computer's name", "Studio:8750", "", "open proxied by TLS");
        add("its name in the network", "studio.local:8750", "", "open proxied by TLS");
        add("a name like it", "localhost.evil.example:8750", "", "by TLS");
        add("a rebound name's page", "evil.example:8750", "http://evil.example:8750", "");
        add("the public name", "Music.example", "", "proxied by TLS");
        add("none", "", "", "");
        add("nonsense", "[::1:8750", "", "");
        add("a port beyond all", "localhost:99999", "", "");
        add("its own page", "localhost:8750", "http://localhost:8750", "local open proxied");
        add("its public page", "localhost:8750", "https://music.example", "proxied");
        add("the public name's page without TLS", "music.example", "http://music.example", "");
        add("another page", "localhost:8750", "http://evil.example", "");
        add("a page of this computer", "localhost:8750", "http://localhost:3000", "");
        add("no page's", "localhost:8750", "null", "");
        add("its page by TLS", "localhost:8750", "https://localhost:8750", "by TLS");
    }

    void keepsItsNames()
    {
        const auto [host, origin, services] = fetchRow<QString, QString, QString>();
        const std::vector<std::pair<QString, HostPolicy>> all = {
            {"local", HostPolicy({true, false, 8750, "", "Studio"})},
            {"open", HostPolicy({false, false, 8750, "", "Studio"})},
            {"proxied", HostPolicy({false, false, 8750, "https://music.example/teko", "Studio"})},
            {"by TLS", HostPolicy({false, true, 8750, "", "Studio"})}};
        QStringList accepting;
        for (const auto &[name, policy] : all) {
            if (policy.acceptsHost(host.toStdString())
                && policy.acceptsOrigin(origin.toStdString(), host.toStdString()))
                accepting << name;
        }
        QCOMPARE(accepting.join(' '), services);
    }

    void givesPlacesToTheNewcomer_data()
    {
        const Rows<QString, QString, int> add;
        // Each place is a letter, its address.
        add("nobody has more than one", "abcd", "e", 2);
        add("nobody has more than one, also not the newcomer", "abcd", "b", -1);
        add("one has more", "abba", "c", 3);
        add("several have", "aabb", "c", 1);
        add("the newcomer will have as many", "aabc", "b", -1);
        add("the newcomer will have fewer", "aaab", "b", 2);
        add("the newcomer has the most", "aaab", "a", -1);
    }

    void givesPlacesToTheNewcomer()
    {
        const auto [queue, newcomer, place] = fetchRow<QString, QString, int>();
        std::vector<std::string> addresses;
        for (const QChar address : queue)
            addresses.push_back(QString(address).toStdString());
        const auto given = placeFor(addresses, newcomer.toStdString(), 7);
        QCOMPARE(given ? int(*given) : -1, place);
    }

    void countsClientsByNetwork_data()
    {
        const Rows<std::string, std::string, std::string> add;
        add("IPv4", "192.0.2.7", "", "192.0.2.7");
        add("IPv6", "2001:db8:1:2:3:4:5:6", "", "2001:db8:1::");
        add("IPv4 in IPv6", "::ffff:192.0.2.7", "", "192.0.2.7");
        add("this computer", "127.0.3.2", "", "127.0.0.0");
        add("this computer, IPv6", "::1", "", "127.0.0.0");
        add("this computer, IPv4 in IPv6", "::ffff:127.0.0.1", "", "127.0.0.0");
        add("a header of the proxy, IPv4 in IPv6", "::ffff:192.0.2.1", "198.51.100.1",
            "198.51.100.1");
        add("a header of anybody", "192.0.2.7", "198.51.100.1", "192.0.2.7");
        add("a header of the proxy", "192.0.2.1", "203.0.113.9, 198.51.100.1", "198.51.100.1");
        add("a proxy without it", "192.0.2.1", "unknown", "192.0.2.1");
    }

    void countsClientsByNetwork()
    {
        const auto [peer, header, network] = fetchRow<std::string, std::string, std::string>();
        QCOMPARE(clientNetwork(Poco::Net::IPAddress(peer), "192.0.2.1", header), network);
    }
};

TEKO_TEST(TestLocalServiceRules)
#include "tst_localservicerules.moc"
