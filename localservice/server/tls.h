// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/HTTPClientSession.h>
#include <Poco/Net/ServerSocket.h>

#include <filesystem>
#include <memory>

namespace localservice {

/// An unbound server socket that speaks TLS 1.2 or newer. `certificate` is a PEM file with the
/// certificate and its chain, `key` one with its private key. Throws Poco::Exception when they
/// cannot be used, or when the program was built without TLS.
[[nodiscard]] Poco::Net::ServerSocket makeTlsSocket(const std::filesystem::path &certificate,
                                                    const std::filesystem::path &key);

/// A connection to a TLS server on this computer. Its certificate is not verified, since it need
/// not be valid for the address of this computer. Throws Poco::Exception.
[[nodiscard]] std::unique_ptr<Poco::Net::HTTPClientSession>
makeTlsClient(const Poco::Net::SocketAddress &address);

} // namespace localservice
