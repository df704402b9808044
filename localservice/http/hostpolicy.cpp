// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/http/hostpolicy.h"

#include <Poco/Net/IPAddress.h>
#include <Poco/String.h>

#include <algorithm>
#include <cctype>
#include <charconv>

namespace localservice {

namespace {

constexpr std::uint16_t httpPort = 80;
constexpr std::uint16_t httpsPort = 443;

bool isHostText(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '-' || c == ':';
    });
}

bool isIpAddress(const std::string &host)
{
    Poco::Net::IPAddress address;
    return Poco::Net::IPAddress::tryParse(host, address);
}

bool isLoopbackName(const std::string &host)
{
    Poco::Net::IPAddress address;
    return host == "localhost"
        || (Poco::Net::IPAddress::tryParse(host, address) && address.isLoopback());
}

struct Origin
{
    std::string scheme;
    HostAndPort address;

    bool operator==(const Origin &) const = default;
};

std::optional<Origin> parseOrigin(std::string_view url)
{
    const std::size_t colon = url.find("://");
    if (colon == std::string_view::npos)
        return std::nullopt;
    const std::string scheme = Poco::toLower(std::string(url.substr(0, colon)));
    if (scheme != "http" && scheme != "https")
        return std::nullopt;
    std::string_view host = url.substr(colon + 3);
    host = host.substr(0, host.find('/'));
    const auto address = parseHost(host, scheme == "https" ? httpsPort : httpPort);
    return address ? std::optional(Origin{scheme, *address}) : std::nullopt;
}

} // namespace

std::optional<HostAndPort> parseHost(std::string_view text, std::uint16_t defaultPort)
{
    HostAndPort result{"", defaultPort};
    const bool isBracketed = !text.empty() && text.front() == '[';
    const std::size_t end = isBracketed ? text.find(']') : text.find(':');
    if (isBracketed && end == std::string_view::npos)
        return std::nullopt;
    const std::string_view host = isBracketed ? text.substr(1, end - 1) : text.substr(0, end);
    std::string_view rest = text.substr(std::min(text.size(), isBracketed ? end + 1 : end));
    if (!isHostText(host))
        return std::nullopt;
    result.host = Poco::toLower(std::string(host));
    if (rest.empty())
        return result;
    if (rest.front() != ':')
        return std::nullopt;
    rest.remove_prefix(1);
    const auto [stop, error] = std::from_chars(rest.data(), rest.data() + rest.size(), result.port);
    if (error != std::errc() || stop != rest.data() + rest.size())
        return std::nullopt;
    return result;
}

HostPolicy::HostPolicy(const Reachable &reachable)
    : m_reachable(reachable)
{
    if (const auto origin = parseOrigin(reachable.publicUrl))
        m_public = origin->address;
}

bool HostPolicy::acceptsHost(std::string_view host) const
{
    const auto own = parseHost(host, defaultPort());
    if (!own)
        return false;
    if (m_public && parseHost(host, m_public->port) == m_public)
        return true;
    if (m_reachable.byLoopbackOnly)
        return isLoopbackName(own->host) && own->port == m_reachable.port;
    return isIpAddress(own->host) || isLoopbackName(own->host) || isComputerName(own->host)
        || (m_reachable.byTls && !m_public);
}

// In a local network the name may have the ending of multicast DNS.
bool HostPolicy::isComputerName(const std::string &host) const
{
    const std::string name = Poco::toLower(m_reachable.computerName);
    return !name.empty() && (host == name || host == name + ".local");
}

bool HostPolicy::acceptsOrigin(std::string_view origin, std::string_view host) const
{
    if (origin.empty())
        return true;
    const auto asked = parseOrigin(origin);
    if (!asked)
        return false;
    // What is reached by its public name is asked by its public pages alone.
    if (m_public && parseHost(host, m_public->port) == m_public)
        return asked == parseOrigin(m_reachable.publicUrl);
    if (m_public && asked == parseOrigin(m_reachable.publicUrl))
        return true;
    const auto own = parseHost(host, defaultPort());
    return own && asked == Origin{m_reachable.byTls ? "https" : "http", *own};
}

bool isWebAddress(std::string_view text)
{
    return parseOrigin(text).has_value();
}

} // namespace localservice
