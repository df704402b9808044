// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/handlerfactory.h"

#include <Poco/Net/TCPServer.h>
#include <Poco/ThreadPool.h>

#include <filesystem>
#include <memory>

namespace localservice {

/// Where and how a server listens.
struct ServerSettings
{
    std::string host = "127.0.0.1";
    std::uint16_t port = 8750; ///< 0: any free one
    std::filesystem::path certificate; ///< for TLS; "" without
    std::filesystem::path key;
    std::string publicUrl; ///< the address behind a proxy; "" without
    std::string trustedProxy; ///< the IP address of a proxy that states its clients' addresses
    std::string statusKey; ///< the key for /status; empty disables /status
    ConnectionLimits limits;
};

/// Listens on one address and serves its connections, one request each, on a bounded number of
/// threads.
class HttpServer final
{
public:
    /// Listens from here on; throws Poco::Exception when the address or the certificate cannot be
    /// used.
    HttpServer(const ServerSettings &settings, const Backend &backend);
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    /// Aborts all connections and waits for their threads.
    ~HttpServer();

    /// Its base address: "http://host:port" or "https://host:port".
    [[nodiscard]] const std::string &url() const { return m_url; }
    /// Whether other computers reach it, and can read what is sent.
    [[nodiscard]] bool isOpenToNetworkWithoutTls() const { return m_isOpenWithoutTls; }

private:
    Backend m_backend;
    Connections m_connections;
    Poco::ThreadPool m_threads;
    std::string m_url;
    bool m_isOpenWithoutTls = false;
    std::unique_ptr<RequestRules> m_rules;
    std::unique_ptr<Poco::Net::TCPServer> m_server;
};

} // namespace localservice
