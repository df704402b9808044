// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/requestbody.h"

#include "localservice/http/fields.h"

#include <Poco/Exception.h>
#include <Poco/Net/HTTPResponse.h>

#include <algorithm>
#include <charconv>

namespace localservice {

namespace {

constexpr std::size_t blockBytes = 16384;

// What has arrived, at least one byte. A read of the whole block would wait until that is full,
// however slowly the bytes come.
std::streamsize readSome(std::streambuf &source, std::vector<char> &block)
{
    try {
        if (source.sgetc() == std::streambuf::traits_type::eof())
            return 0;
        const auto room = static_cast<std::streamsize>(block.size());
        return source.sgetn(block.data(), std::min(room, source.in_avail()));
    } catch (const Poco::Exception &) {
        // The peer has disconnected or timed out.
        return 0;
    }
}

std::int64_t lengthOf(const Poco::Net::HTTPServerRequest &request)
{
    if (request.has("Transfer-Encoding") || !request.hasContentLength())
        throw BadRequest("The request does not state its length.",
                         Poco::Net::HTTPResponse::HTTP_LENGTH_REQUIRED);
    const std::string &text = request.get("Content-Length");
    std::int64_t length = -1;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc() || stop != text.data() + text.size() || length < 0)
        throw BadRequest("The request's length is not a number.");
    return length;
}

} // namespace

RequestBody::RequestBody(Poco::Net::HTTPServerRequest &request)
    : m_source(*request.stream().rdbuf())
    , m_contentLength(lengthOf(request))
    , m_block(blockBytes)
{ }

std::string_view RequestBody::next()
{
    const std::streamsize got = readSome(m_source, m_block);
    m_bytes += got;
    if (got == 0 && m_bytes < m_contentLength)
        throw BadRequest("The request ended prematurely.");
    return {m_block.data(), static_cast<std::size_t>(got)};
}

} // namespace localservice
