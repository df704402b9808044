// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/ratelimiter.h"
#include "localservice/http/fields.h"
#include "localservice/http/multipart.h"
#include "localservice/jobs/commandseparator.h"
#include "localservice/jobs/pace.h"
#include "localservice/options.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace localservice;
using namespace std::chrono_literals;

namespace {

// Writes down what a parser says: "name(filename)=content;" for every part.
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
    void takesUploadsApart_data();
    void takesUploadsApart();
    void refusesBrokenUploads_data();
    void refusesBrokenUploads();
    void readsForms_data();
    void readsForms();
    void limitsForms();
    void findsBoundaries_data();
    void findsBoundaries();
    void readsOptions_data();
    void readsOptions();
    void splitsCommands_data();
    void splitsCommands();
    void foretellsTheTimeLeft_data();
    void foretellsTheTimeLeft();
    void limitsTriesWithinAMinute();
};

void RequestsTest::takesUploadsApart_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("parts");
    const QByteArray end = "--B--\r\n";
    QTest::newRow("a field") << part("name=\"a\"", "one") + end << QByteArray("a()=one;");
    QTest::newRow("an empty field") << part("name=\"a\"", "") + end << QByteArray("a()=;");
    QTest::newRow("a file, then a field")
        << part("name=\"f\"; filename=\"/tmp/x.wav\"", "1\r\n--2\r\n") + part("name=\"b\"", "3")
            + end
        << QByteArray("f(/tmp/x.wav)=1\r\n--2\r\n;b()=3;");
    QTest::newRow("a path with quotation marks and backslashes")
        << part("name=\"f\"; filename=\"C:\\my \"best\" songs\\x.wav\"", "1") + end
        << QByteArray("f(C:\\my \"best\" songs\\x.wav)=1;");
    QTest::newRow("further headers, other case")
        << "--B\r\nContent-Type: text/plain\r\ncontent-disposition: form-data; "
           "name=\"a\"\r\n\r\n1\r\n"
            + end
        << QByteArray("a()=1;");
    QTest::newRow("a preamble and an epilogue")
        << "before\r\n" + part("name=\"a\"", "1") + end + "after" << QByteArray("a()=1;");
    QTest::newRow("nearly a boundary") << part("name=\"a\"", "\r\n\r\n-\r\n--\r\r\n") + end
                                       << QByteArray("a()=\r\n\r\n-\r\n--\r\r\n;");
}

void RequestsTest::takesUploadsApart()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, parts);
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

void RequestsTest::refusesBrokenUploads_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("throws");
    QTest::newRow("no closing boundary") << part("name=\"a\"", "1") << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no name at all") << QByteArray("--B\r\nX: y\r\n\r\n1\r\n--B--") << true;
    QTest::newRow("a name without its end") << part("name=\"a", "1") << true;
    QTest::newRow("junk behind the boundary") << QByteArray("--Bx\r\n") << true;
    QTest::newRow("an endless header") << "--B\r\nX: " + QByteArray(100000, 'y') << true;
}

void RequestsTest::refusesBrokenUploads()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, throws);
    PartList list;
    MultipartParser parser("B", list);
    if (throws)
        QVERIFY_EXCEPTION_THROWN(parser.feed(body.toStdString()), BadRequest);
    else
        parser.feed(body.toStdString());
    QVERIFY(!parser.isComplete());
}

void RequestsTest::readsForms_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("a");
    QTest::newRow("plain") << QByteArray("b=2&a=1") << QByteArray("1");
    QTest::newRow("encoded") << QByteArray("a=%C3%A4%26+%3d") << QByteArray("ä& =");
    QTest::newRow("missing") << QByteArray("b=2") << QByteArray();
    QTest::newRow("no value") << QByteArray("a&b=1") << QByteArray();
    QTest::newRow("empty items") << QByteArray("&&a=1&") << QByteArray("1");
    QTest::newRow("equals signs") << QByteArray("a=b=c") << QByteArray("b=c");
}

void RequestsTest::readsForms()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, a);
    QCOMPARE(QByteArray::fromStdString(Fields::fromForm(body.toStdString())["a"]), a);
}

void RequestsTest::limitsForms()
{
    std::string many;
    for (int i = 0; i < 100; ++i)
        many += "f" + std::to_string(i) + "=1&";
    for (const std::string &body :
         {std::string("a=%"), std::string("a=%4"), std::string("a=%zz"), std::string("a=%00"),
          std::string("a=%ff%fe"), std::string("a=") + std::string(Fields::kMostBytes, 'x'), many})
        QVERIFY_EXCEPTION_THROWN((void)Fields::fromForm(body), BadRequest);
    QCOMPARE(baseName("/a/b\\..\\c d.wav"), std::string("c d.wav"));
    QCOMPARE(baseName("../"), std::string());
}

void RequestsTest::findsBoundaries_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("boundary"); // empty: refused
    QTest::newRow("quoted") << QByteArray("multipart/form-data; boundary=\"a+/b=\"")
                            << QByteArray("a+/b=");
    QTest::newRow("bare") << QByteArray("Multipart/Form-Data; boundary=ab; x=y")
                          << QByteArray("ab");
    QTest::newRow("none") << QByteArray("multipart/form-data") << QByteArray();
    QTest::newRow("empty") << QByteArray("multipart/form-data; boundary=\"\"") << QByteArray();
    QTest::newRow("no upload") << QByteArray("text/plain; boundary=x") << QByteArray();
}

void RequestsTest::findsBoundaries()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, boundary);
    if (boundary.isEmpty())
        QVERIFY_EXCEPTION_THROWN((void)boundaryOf(type.toStdString()), BadRequest);
    else
        QCOMPARE(QByteArray::fromStdString(boundaryOf(type.toStdString())), boundary);
}

void RequestsTest::readsOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("result"); // empty: refused
    const auto row = [](const char *arguments, const char *result) {
        QTest::newRow(arguments) << QString(arguments).split(' ', Qt::SkipEmptyParts)
                                 << QString(result);
    };
    row("", "127.0.0.1 8750 active 0 30");
    row("--embedded", "127.0.0.1 0 active 0 30");
    row("--embedded --listen 0.0.0.0:99", "0.0.0.0 99 active 0 30");
    row("--listen=[::1]:0 --subscription expired", "::1 0 expired 0 30");
    row("--daily-limit 10 --keep-days=7 --subscription none", "127.0.0.1 8750 none 10 7");
    for (const char *wrong :
         {"--listen localhost", "--listen :1", "--listen a:65536", "--listen", "--workers 0",
          "--workers x", "--keep-days 1x", "--subscription maybe", "--embedded=1", "--nonsense",
          "file.wav", "--separator='open", "--data="})
        row(wrong, "");
}

void RequestsTest::readsOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, result);
    std::vector<std::string> words;
    for (const QString &argument : arguments)
        words.push_back(argument.toStdString());
    if (result.isEmpty()) {
        QVERIFY_EXCEPTION_THROWN((void)parseOptions(words), UsageError);
        return;
    }
    const Options options = parseOptions(words);
    const QStringList states = {"active", "none", "expired"};
    QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5")
                 .arg(QString::fromStdString(options.host))
                 .arg(options.port)
                 .arg(states[int(options.licence.subscription)])
                 .arg(options.licence.filesPerDay)
                 .arg(options.keepDays),
             result);
}

void RequestsTest::splitsCommands_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("words"); // empty: refused
    QTest::newRow("plain") << " prog  -x\t{input} " << QStringList{"prog", "-x", "{input}"};
    QTest::newRow("quoted") << "\"my prog\" 'a \"b\"' ''" << QStringList{"my prog", "a \"b\"", ""};
    QTest::newRow("joined") << "a'b c'd" << QStringList{"ab cd"};
    QTest::newRow("no shell") << "a;b $(c) `d`" << QStringList{"a;b", "$(c)", "`d`"};
    QTest::newRow("open quotation") << "a 'b" << QStringList();
    QTest::newRow("nothing") << "  " << QStringList();
}

void RequestsTest::splitsCommands()
{
    QFETCH(QString, command);
    QFETCH(QStringList, words);
    if (words.isEmpty()) {
        QVERIFY_EXCEPTION_THROWN((void)wordsOf(command.toStdString()), std::invalid_argument);
        return;
    }
    QStringList got;
    for (const std::string &word : wordsOf(command.toStdString()))
        got << QString::fromStdString(word);
    QCOMPARE(got, words);
}

void RequestsTest::foretellsTheTimeLeft_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("share");
    QTest::addColumn<double>("elapsed");
    QTest::addColumn<int>("left");
    // 100 seconds of sound; two workers that have learnt to do 20 seconds in one.
    QTest::newRow("first in the queue") << 0.0 << 0.0 << 0.0 << 5;
    QTest::newRow("behind others") << 400.0 << 0.0 << 0.0 << 15;
    QTest::newRow("just begun") << 0.0 << 0.05 << 60.0 << 5;
    QTest::newRow("slower than usual") << 0.0 << 0.5 << 60.0 << 60;
    QTest::newRow("nearly ready") << 0.0 << 0.999 << 5.0 << 1;
    QTest::newRow("ready") << 0.0 << 1.0 << 5.0 << 0;
}

void RequestsTest::foretellsTheTimeLeft()
{
    QFETCH(double, before);
    QFETCH(double, share);
    QFETCH(double, elapsed);
    Pace pace(2);
    pace.learn(300, 10s);
    pace.learn(0, 1s);
    QTEST(pace.secondsLeft({before, 100, share, std::chrono::duration<double>(elapsed)}), "left");
}

void RequestsTest::limitsTriesWithinAMinute()
{
    RateLimiter limiter(2);
    const RateLimiter::Time start{};
    QVERIFY(limiter.count("a", start));
    QVERIFY(limiter.count("a", start + 30s));
    QVERIFY(!limiter.count("a", start + 59s));
    QVERIFY(!limiter.mayGoOn("a", start + 59s));
    QVERIFY(limiter.count("b", start + 59s));
    QVERIFY(limiter.count("a", start + 60s));
    QVERIFY(!limiter.count("a", start + 61s));
}

TEKO_TEST_MAIN(RequestsTest)
#include "tst_requests.moc"
