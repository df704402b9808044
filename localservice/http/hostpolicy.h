// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace localservice {

/// A host and a port as in an address, the host in lower case and without brackets.
struct HostAndPort
{
    std::string host;
    std::uint16_t port = 0;

    bool operator==(const HostAndPort &) const = default;
};

/// Parses "host", "host:port" or "[IPv6]:port"; empty when it is none of these.
[[nodiscard]] std::optional<HostAndPort> parseHost(std::string_view text,
                                                   std::uint16_t defaultPort);

/// Which requests are meant for this service, by their headers Host and Origin. Keeps web pages in
/// the user's browser out, also those whose host name has been pointed to this computer.
class HostPolicy final
{
public:
    /// How the service is reached. `publicUrl` is its address behind a proxy, "" for none.
    struct Reachable
    {
        bool byLoopbackOnly = true;
        bool byTls = false;
        std::uint16_t port = 0;
        std::string publicUrl;
        std::string computerName;
    };

    explicit HostPolicy(const Reachable &reachable);

    /// Whether a Host header names this service. A service that only this computer reaches goes by
    /// loopback names and its public address; others also by IP addresses and the computer's name,
    /// or, by TLS and without a public address, by any name: its certificate is for the right one.
    [[nodiscard]] bool acceptsHost(std::string_view host) const;
    /// Whether an Origin header ("": none) is the service's own, as the request's Host header names
    /// it, or that of the public address.
    [[nodiscard]] bool acceptsOrigin(std::string_view origin, std::string_view host) const;

private:
    [[nodiscard]] bool isComputerName(const std::string &host) const;
    [[nodiscard]] std::uint16_t defaultPort() const { return m_reachable.byTls ? 443 : 80; }

    Reachable m_reachable;
    std::optional<HostAndPort> m_public;
};

/// Whether text is an http or https address.
[[nodiscard]] bool isWebAddress(std::string_view text);

} // namespace localservice
