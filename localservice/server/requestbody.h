// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/HTTPServerRequest.h>

#include <string_view>
#include <vector>

namespace localservice {

/// The body of a request, piece by piece as it arrives. A body that ends early is not taken for a
/// complete one: it must state its length, since the library does not tell the end of a chunked
/// one from a broken connection.
class RequestBody final
{
public:
    /// Throws BadRequest with status 411 when the request does not state its length.
    explicit RequestBody(Poco::Net::HTTPServerRequest &request);

    /// The next bytes, valid until the next call; none at the end. Throws BadRequest when the body
    /// ends too early.
    [[nodiscard]] std::string_view next();

private:
    std::streambuf &m_source;
    const std::int64_t m_contentLength; ///< in bytes
    std::int64_t m_bytes = 0;
    std::vector<char> m_block;
};

} // namespace localservice
