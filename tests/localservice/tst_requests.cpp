// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/ratelimiter.h"
#include "localservice/http/fields.h"
#include "localservice/http/multipart.h"
#include "localservice/jobs/commandseparator.h"
#include "localservice/jobs/throughputestimator.h"
#include "localservice/options.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace localservice;
using namespace std::chrono_literals;

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

class RequestsTest final : public TestCase
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
            many += "f" + std::to_string(i) + "=1&";
        for (const std::string &body :
             {std::string("a=%"), std::string("a=%4"), std::string("a=%zz"), std::string("a=%00"),
              std::string("a=%ff%fe"), std::string("a=") + std::string(Fields::maxBytes, 'x'),
              many})
            QVERIFY_EXCEPTION_THROWN((void)Fields::fromForm(body), BadRequest);
        QCOMPARE(baseName("/a/b\\..\\c d.wav"), std::string("c d.wav"));
        QCOMPARE(baseName("../"), std::string());
    }

    void findsBoundaries()
    {
        QCOMPARE(boundaryOf("multipart/form-data; boundary=\"a+/b=\""), std::string("a+/b="));
        QCOMPARE(boundaryOf("Multipart/Form-Data; boundary=ab; x=y"), std::string("ab"));
        for (const char *type : {"multipart/form-data", "multipart/form-data; boundary=\"\"",
                                 "text/plain; boundary=x"})
            QVERIFY_EXCEPTION_THROWN((void)boundaryOf(type), BadRequest);
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
        for (const char *command : {"a 'b", "  "})
            QVERIFY_EXCEPTION_THROWN((void)splitCommand(command), std::invalid_argument);
    }

    void estimatesTheTimeLeft_data()
    {
        const Rows<double, double, double, int> add;
        // 100 seconds of sound; two workers at 20 seconds of sound a second.
        add("first in the queue", 0.0, 0.0, 0.0, 5);
        add("behind others", 400.0, 0.0, 0.0, 15);
        add("just begun", 0.0, 0.05, 60.0, 5);
        add("slower than usual", 0.0, 0.5, 60.0, 60);
        add("nearly ready", 0.0, 0.999, 5.0, 1);
        add("ready", 0.0, 1.0, 5.0, 0);
    }

    void estimatesTheTimeLeft()
    {
        const auto [before, share, elapsed, left] = fetchRow<double, double, double, int>();
        ThroughputEstimator throughput(2);
        throughput.addMeasurement(300, 10s);
        throughput.addMeasurement(0, 1s);
        QCOMPARE(
            throughput.secondsLeft({before, 100, share, std::chrono::duration<double>(elapsed)}),
            left);
    }

    void limitsTriesWithinAMinute()
    {
        RateLimiter limiter(2);
        const RateLimiter::Time start{};
        QVERIFY(limiter.count("a", start));
        QVERIFY(limiter.count("a", start + 30s));
        QVERIFY(!limiter.count("a", start + 59s));
        QVERIFY(limiter.count("b", start + 59s));
        QVERIFY(limiter.count("a", start + 60s));
        QVERIFY(!limiter.count("a", start + 61s));
    }
};

TEKO_TEST_MAIN(RequestsTest)
#include "tst_requests.moc"
