// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/IPAddress.h>

#include <string>

namespace localservice {

/// The IPv4 address behind an IPv6 address such as "::ffff:192.0.2.1"; other addresses as they are.
[[nodiscard]] Poco::Net::IPAddress unmapped(const Poco::Net::IPAddress &address);

/// The key that identifies a client for limits: its IPv4 address, or the first 48 bits of its IPv6
/// address, since a network of that size may belong to one client. All loopback addresses are one.
[[nodiscard]] std::string networkOf(const Poco::Net::IPAddress &address);

/// The network of a client: of the connection's peer, or, when that is the trusted proxy (an
/// unmapped address, "": none), of the last address of its header X-Forwarded-For.
[[nodiscard]] std::string clientNetwork(const Poco::Net::IPAddress &peer,
                                        const std::string &trustedProxy,
                                        const std::string &forwardedFor);

} // namespace localservice
