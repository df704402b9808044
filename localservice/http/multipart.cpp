// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/http/multipart.h"

#include "localservice/http/fields.h"

#include <algorithm>
#include <cctype>

namespace localservice {

namespace {

constexpr std::size_t maxPartHeaderBytes = 8192;
constexpr std::size_t maxBoundaryBytes = 200;
constexpr std::string_view lineEnd = "\r\n";

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// The value of `; key="…"`. The text ends at the next quotation mark, or at the line's last one
// for a path, which may hold such marks itself: clients put it last and do not escape it.
std::string quotedValue(std::string_view line, std::string_view key, bool upToLast)
{
    const std::string opening = std::string(key) + "=\"";
    std::size_t at = line.find(opening);
    while (at != std::string_view::npos && at > 0 && line[at - 1] != ' ' && line[at - 1] != ';')
        at = line.find(opening, at + 1);
    if (at == std::string_view::npos)
        return {};
    const std::size_t begin = at + opening.size();
    const std::size_t end = upToLast ? line.rfind('"') : line.find('"', begin);
    if (end == std::string_view::npos || end < begin)
        throw BadRequest("The upload has a part whose name does not end.");
    return std::string(line.substr(begin, end - begin));
}

std::string_view dispositionLine(std::string_view header)
{
    constexpr std::string_view disposition = "content-disposition:";
    const std::size_t at = lowered(header).find(disposition);
    if (at == std::string_view::npos)
        throw BadRequest("The upload has a part without a name.");
    const std::string_view line = header.substr(at + disposition.size());
    return line.substr(0, line.find(lineEnd));
}

} // namespace

MultipartParser::MultipartParser(std::string_view boundary, Sink &sink)
    : m_delimiter("\r\n--" + std::string(boundary))
    , m_sink(sink)
    , m_buffer(lineEnd) // the first boundary needs no line end of its own
{ }

void MultipartParser::feed(std::string_view bytes)
{
    m_buffer += bytes;
    m_rest = m_buffer;
    while (step()) { }
    m_buffer.erase(0, m_buffer.size() - m_rest.size());
}

bool MultipartParser::step()
{
    switch (m_state) {
    case State::Preamble:
        return skipPreamble();
    case State::BoundaryEnd:
        return endBoundary();
    case State::Header:
        return readHeader();
    case State::Body:
        return readBody();
    case State::End:
        m_rest = {};
        break;
    }
    return false;
}

bool MultipartParser::skipPreamble()
{
    const std::size_t at = m_rest.find(m_delimiter);
    if (at == std::string_view::npos) {
        m_rest.remove_prefix(m_rest.size() - std::min(m_rest.size(), m_delimiter.size() - 1));
        return false;
    }
    m_rest.remove_prefix(at + m_delimiter.size());
    m_state = State::BoundaryEnd;
    return true;
}

bool MultipartParser::endBoundary()
{
    if (m_rest.size() < 2)
        return false;
    const std::string_view end = m_rest.substr(0, 2);
    if (end != "--" && end != lineEnd)
        throw BadRequest("The upload has a broken boundary.");
    m_state = end == "--" ? State::End : State::Header;
    // The line end stays: a part without any header would begin with it.
    if (m_state == State::End)
        m_rest.remove_prefix(2);
    return true;
}

bool MultipartParser::readHeader()
{
    constexpr std::string_view headerEnd = "\r\n\r\n";
    const std::size_t end = m_rest.find(headerEnd);
    if (std::min(end, m_rest.size()) > maxPartHeaderBytes)
        throw BadRequest("The upload has a part whose header is too long.");
    if (end == std::string_view::npos)
        return false;
    const std::string_view line = dispositionLine(m_rest.substr(0, end + lineEnd.size()));
    m_sink.beginPart(quotedValue(line, "name", false), quotedValue(line, "filename", true));
    m_rest.remove_prefix(end + headerEnd.size());
    m_state = State::Body;
    return true;
}

bool MultipartParser::readBody()
{
    const std::size_t at = m_rest.find(m_delimiter);
    if (at == std::string_view::npos) {
        const std::size_t certain = m_rest.size() - std::min(m_rest.size(), m_delimiter.size() - 1);
        m_sink.partData(m_rest.substr(0, certain));
        m_rest.remove_prefix(certain);
        return false;
    }
    m_sink.partData(m_rest.substr(0, at));
    m_sink.endPart();
    m_rest.remove_prefix(at + m_delimiter.size());
    m_state = State::BoundaryEnd;
    return true;
}

std::string boundaryOf(std::string_view contentType)
{
    const std::size_t at = lowered(contentType).find("boundary=");
    if (lowered(contentType).rfind("multipart/form-data", 0) != 0 || at == std::string_view::npos)
        throw BadRequest("The upload is not a form with a file.");
    std::string_view value = contentType.substr(at + std::string_view("boundary=").size());
    if (!value.empty() && value.front() == '"') {
        value.remove_prefix(1);
        value = value.substr(0, value.find('"'));
    } else {
        value = value.substr(0, value.find_first_of("; \t"));
    }
    if (value.empty() || value.size() > maxBoundaryBytes)
        throw BadRequest("The upload is not a form with a file.");
    return std::string(value);
}

} // namespace localservice
