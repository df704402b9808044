// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace localservice {

/// Initialises libsodium; throws std::runtime_error when the system has no random source. Call once
/// at start.
void initialiseSecrets();

/// `bytes` random bytes as lower-case hexadecimal digits.
[[nodiscard]] std::string randomHex(std::size_t bytes);

/// A random number of 1 to 2147483647, for identifiers that cannot be guessed from others.
[[nodiscard]] std::int32_t randomId();

/// A keyed digest (64 hexadecimal digits) of `text`, from which neither can be computed.
[[nodiscard]] std::string keyedDigest(std::string_view text, std::string_view key);

/// Compares two secrets in constant time.
[[nodiscard]] bool sameSecret(std::string_view one, std::string_view other);

} // namespace localservice
