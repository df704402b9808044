// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/handlerfactory.h"

#include <Poco/Net/TCPServer.h>
#include <Poco/ThreadPool.h>

#include <memory>

namespace localservice {

/// Listens on one address and serves its connections, one request each, on a bounded number of
/// threads.
class HttpServer final
{
public:
    /// Listens from here on; throws Poco::Exception when the address cannot be had. Port 0: any
    /// free one. A request's header, with its form, must be there within `requestTime`.
    HttpServer(const std::string &host, std::uint16_t port, Backend backend,
               std::chrono::milliseconds requestTime = std::chrono::seconds(10));
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    /// Cuts all connections and waits for their threads.
    ~HttpServer();

    /// Where it listens: "host:port", as it stands in an address.
    [[nodiscard]] const std::string &address() const { return m_backend.fallbackHost; }

private:
    Backend m_backend;
    Connections m_connections;
    Poco::ThreadPool m_threads;
    std::unique_ptr<Poco::Net::TCPServer> m_server;
};

} // namespace localservice
