// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/IPAddress.h>

#include <string>

namespace localservice {

/// The key that identifies a client for limits: its IPv4 address, or the first 64 bits of its IPv6
/// address, since such a network usually belongs to one client. All loopback addresses are one.
[[nodiscard]] std::string networkOf(const Poco::Net::IPAddress &address);

/// The network of a client: of the connection's peer, or, when that is the trusted proxy ("":
/// none), of the last address of its header X-Forwarded-For.
[[nodiscard]] std::string clientNetwork(const Poco::Net::IPAddress &peer,
                                        const std::string &trustedProxy,
                                        const std::string &forwardedFor);

} // namespace localservice
