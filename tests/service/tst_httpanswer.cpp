// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/httpanswer.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

/// Answers as they come over the wire, whole and in the smallest pieces.
class TestHttpAnswer final : public TestCase
{
    Q_OBJECT

private slots:
    void takesApart_data()
    {
        const Rows<QByteArray, QByteArray> add;
        const auto answer = [](const QByteArray &headers, const QByteArray &body) {
            return QByteArray("HTTP/1.1 200 OK\r\n" + headers + "\r\n\r\n" + body);
        };
        add("counted", answer("content-LENGTH:  3", "abc"), "whole 200 abc");
        add("more than counted", answer("Content-Length: 3", "abcd"), "whole 200 abc");
        add("less than counted", answer("Content-Length: 3", "ab"), "open 200 ab");
        add("nothing counted", answer("Content-Length: 0", ""), "whole 200 ");
        add("no body", "HTTP/1.1 204 No Content\r\n\r\n", "whole 204 ");
        add("to the end", answer("A: b", "abc"), "whole 200 abc");
        add("bare line feeds", "HTTP/1.0 404\nA: b\n\nabc", "whole 404 abc");
        add("interim", "HTTP/1.1 100 Continue\r\nContent-Length: 9\r\n\r\n" + answer("A: b", "x"),
            "whole 200 x");
        const QByteArray chunked = "Transfer-Encoding: Chunked";
        add("chunks", answer(chunked, "2\r\nab\r\n0A ; x\r\n0123456789\r\n0\r\nT: x\r\n\r\n"),
            "whole 200 ab0123456789");
        add("chunks cut off", answer(chunked, "2\r\nab\r\n"), "open 200 ab");
        add("chunk too long", answer(chunked, "2\r\nabc\r\n0\r\n\r\n"), "broken 200 ab");
        for (const char *size : {"", "-1", "0x1", "zz", "8000000000000000"})
            add(size, answer(chunked, QByteArray(size) + "\r\nab\r\n"), "broken 200 ");
        for (const char *length : {"-5", "5, 50", "+3", "", "99999999999999999999"})
            add(length, answer(QByteArray("Content-Length: ") + length, "abc"), "broken 200 ");
        add("two lengths", answer("Content-Length: 3\r\nContent-Length: 2", "abc"), "broken 200 ");
        add("packed", answer("Transfer-Encoding: gzip", "abc"), "broken 200 ");
        add("no colon", answer("nonsense", ""), "broken 200 ");
        add("endless line", answer("A: " + QByteArray(70'000, 'x'), "abc"), "broken 200 ");
        add("endless head", answer(QByteArray("A: b\r\n").repeated(20'000), ""), "broken 200 ");
        add("another protocol", "SSH-2.0-OpenSSH\r\n\r\n", "broken -1 ");
        add("status of letters", "HTTP/1.1 2OO OK\r\n\r\n", "broken -1 ");
        add("status too small", "HTTP/1.1 000 X\r\n\r\n", "broken 0 ");
    }

    void takesApart()
    {
        const auto [wire, outcome] = fetchRow<QByteArray, QByteArray>();
        for (const qsizetype step : {wire.size(), qsizetype(1)})
            QCOMPARE(outcomeOf(wire, step), outcome);
    }

private:
    static QByteArray outcomeOf(const QByteArray &wire, qsizetype step)
    {
        HttpAnswer answer;
        QByteArray body;
        for (qsizetype i = 0; i < wire.size(); i += step)
            body += answer.take(wire.mid(i, step));
        answer.end();
        const char *state = answer.isBroken() ? "broken " : answer.isWhole() ? "whole " : "open ";
        return state + QByteArray::number(answer.status()) + ' ' + body;
    }
};

TEKO_TEST_MAIN(TestHttpAnswer)

#include "tst_httpanswer.moc"
