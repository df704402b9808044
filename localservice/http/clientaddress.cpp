// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/http/clientaddress.h"

#include <Poco/String.h>

namespace localservice {

namespace {

constexpr unsigned networkBits = 48;

} // namespace

Poco::Net::IPAddress unmapped(const Poco::Net::IPAddress &address)
{
    using Poco::Net::IPAddress;
    if (address.family() != IPAddress::IPv6 || !address.isIPv4Mapped())
        return address;
    const std::string text = address.toString();
    return IPAddress(text.substr(text.rfind(':') + 1));
}

std::string networkOf(const Poco::Net::IPAddress &mapped)
{
    using Poco::Net::IPAddress;
    const IPAddress address = unmapped(mapped);
    // Every program on this computer can take any of its many loopback addresses.
    if (address.isLoopback())
        return "127.0.0.0";
    if (address.family() == IPAddress::IPv4)
        return address.toString();
    return (address & IPAddress(networkBits, IPAddress::IPv6)).toString();
}

std::string clientNetwork(const Poco::Net::IPAddress &peer, const std::string &trustedProxy,
                          const std::string &forwardedFor)
{
    if (trustedProxy.empty() || unmapped(peer).toString() != trustedProxy)
        return networkOf(peer);
    // The proxy appends what it has seen itself; everything before that may be invented.
    Poco::Net::IPAddress client;
    const std::string last = Poco::trim(forwardedFor.substr(forwardedFor.rfind(',') + 1));
    return Poco::Net::IPAddress::tryParse(last, client) ? networkOf(client) : networkOf(peer);
}

} // namespace localservice
