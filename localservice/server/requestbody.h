// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/HTTPServerRequest.h>

#include <string_view>
#include <vector>

namespace localservice {

/// The body of a request, piece by piece as it arrives. A body that ends early is not taken for a
/// complete one.
class RequestBody final
{
public:
    explicit RequestBody(Poco::Net::HTTPServerRequest &request);

    /// The next bytes, valid until the next call; none at the end. Throws BadRequest when the body
    /// ends too early.
    [[nodiscard]] std::string_view next();

private:
    std::streambuf &m_source;
    const std::int64_t m_contentLength; ///< in bytes; -1: not known
    std::int64_t m_bytes = 0;
    std::vector<char> m_block;
};

} // namespace localservice
