// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/httpanswer.h"

#include <algorithm>
#include <limits>

namespace {

/// More than any honest head has.
constexpr qint64 mostLineBytes = 0x10000;

/// The number that the text is, in nothing but digits of the base; -1 when it is none.
qint64 strictNumber(const QByteArray &text, int base)
{
    const auto isDigit = [base](char c) {
        return (c >= '0' && c <= '9')
            || (base == 16 && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')));
    };
    bool isNumber = !text.isEmpty() && std::ranges::all_of(text, isDigit);
    const qint64 number = isNumber ? text.toLongLong(&isNumber, base) : 0;
    return isNumber ? number : -1;
}

} // namespace

QByteArray HttpAnswer::take(const QByteArray &bytes)
{
    m_pending += bytes;
    QByteArray body;
    while (!isWhole() && !isBroken() && (takeBody(body) || takeLine())) { }
    if (isWhole() || isBroken())
        m_pending.clear();
    return body;
}

void HttpAnswer::end()
{
    if (m_part == Part::BodyToTheEnd)
        m_part = Part::Whole;
}

bool HttpAnswer::takeBody(QByteArray &body)
{
    const bool isCounted = m_part == Part::CountedBody || m_part == Part::Chunk;
    if (!isCounted && m_part != Part::BodyToTheEnd)
        return false;
    const qint64 count = isCounted ? qMin<qint64>(m_left, m_pending.size()) : m_pending.size();
    body += m_pending.left(count);
    m_pending.remove(0, count);
    m_lineBytes = 0;
    if (!isCounted)
        return false;
    m_left -= count;
    if (m_left == 0)
        m_part = m_part == Part::Chunk ? Part::ChunkEnd : Part::Whole;
    return m_left == 0;
}

bool HttpAnswer::takeLine()
{
    const qsizetype end = m_pending.indexOf('\n');
    if (m_lineBytes + (end < 0 ? m_pending.size() : end) > mostLineBytes) {
        m_part = Part::Broken;
        return false;
    }
    if (end < 0)
        return false;
    m_lineBytes += end + 1;
    QByteArray line = m_pending.left(end);
    m_pending.remove(0, end + 1);
    if (line.endsWith('\r'))
        line.chop(1);
    readLine(line);
    return true;
}

void HttpAnswer::readLine(const QByteArray &line)
{
    switch (m_part) {
    case Part::StatusLine:
        return readStatus(line);
    case Part::Headers:
        return line.isEmpty() ? endHead() : readHeader(line);
    case Part::ChunkSize:
        return readChunkSize(line);
    case Part::ChunkEnd:
        m_part = line.isEmpty() ? Part::ChunkSize : Part::Broken;
        return;
    case Part::Trailer:
        if (line.isEmpty())
            m_part = Part::Whole;
        return;
    default:
        m_part = Part::Broken;
    }
}

void HttpAnswer::readStatus(const QByteArray &line)
{
    // "HTTP/1.1 200 OK"
    const bool isHttp = line.startsWith("HTTP/1.") && line.size() >= 12 && line.at(8) == ' '
        && (line.size() == 12 || line.at(12) == ' ');
    m_status = isHttp ? int(strictNumber(line.mid(9, 3), 10)) : -1;
    m_reason = line.mid(13);
    m_part = m_status >= 100 ? Part::Headers : Part::Broken;
}

void HttpAnswer::readHeader(const QByteArray &line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon <= 0) {
        m_part = Part::Broken;
        return;
    }
    m_headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
}

void HttpAnswer::endHead()
{
    if (m_status < 200) {
        m_headers.clear();
        m_part = Part::StatusLine;
        return;
    }
    m_hasHead = true;
    m_part = bodyFraming();
}

HttpAnswer::Part HttpAnswer::bodyFraming()
{
    if (m_status == 204 || m_status == 304)
        return Part::Whole;
    Part framing = Part::BodyToTheEnd;
    qint64 announced = -1;
    for (const auto &[name, value] : std::as_const(m_headers)) {
        if (name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0) {
            if (value.compare("chunked", Qt::CaseInsensitive) != 0)
                return Part::Broken;
            framing = Part::ChunkSize;
        } else if (name.compare("Content-Length", Qt::CaseInsensitive) == 0) {
            const qint64 length = strictNumber(value, 10);
            if (length < 0 || (announced >= 0 && length != announced))
                return Part::Broken;
            announced = length;
        }
    }
    if (framing == Part::ChunkSize || announced < 0)
        return framing;
    m_left = announced;
    return announced == 0 ? Part::Whole : Part::CountedBody;
}

void HttpAnswer::readChunkSize(const QByteArray &line)
{
    const qsizetype extension = line.indexOf(';');
    m_left = strictNumber((extension < 0 ? line : line.left(extension)).trimmed(), 16);
    if (m_left < 0)
        m_part = Part::Broken;
    else
        m_part = m_left == 0 ? Part::Trailer : Part::Chunk;
}
