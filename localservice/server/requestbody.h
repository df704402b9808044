// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/HTTPServerRequest.h>

#include <chrono>
#include <string_view>
#include <vector>

namespace localservice {

/// The body of a request, piece by piece as it arrives. Neither a cut body is taken for a whole one
/// nor does a client keep a thread for itself by sending next to nothing.
class RequestBody final
{
public:
    explicit RequestBody(Poco::Net::HTTPServerRequest &request);

    /// The next bytes, valid until the next call; none at the end. Throws BadRequest when the body
    /// ends too early or comes too slowly.
    [[nodiscard]] std::string_view next();

private:
    void checkRate() const;

    std::streambuf &m_source;
    const std::int64_t m_contentLength; ///< in bytes; -1: not known
    const std::chrono::steady_clock::time_point m_began = std::chrono::steady_clock::now();
    std::int64_t m_bytes = 0;
    std::vector<char> m_block;
};

} // namespace localservice
