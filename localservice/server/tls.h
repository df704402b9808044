// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/ServerSocket.h>

#include <filesystem>

namespace localservice {

/// An unbound server socket that speaks TLS 1.2 or newer. `certificate` is a PEM file with the
/// certificate and its chain, `key` one with its private key. Throws Poco::Exception when they
/// cannot be used, or when the program was built without TLS.
[[nodiscard]] Poco::Net::ServerSocket makeTlsSocket(const std::filesystem::path &certificate,
                                                    const std::filesystem::path &key);

} // namespace localservice
