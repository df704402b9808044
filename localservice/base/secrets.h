// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace localservice {

/// Makes the random source ready; throws std::runtime_error when the system has none. Call once at
/// start.
void initialiseSecrets();

/// `bytes` random bytes as lower-case hexadecimal digits.
[[nodiscard]] std::string randomHex(std::size_t bytes);

/// A random number of 1 to 2147483647, for identifiers that nobody may guess from others.
[[nodiscard]] std::int32_t randomId();

/// A digest (64 hexadecimal digits) of `text` under `key`, from which neither can be learnt.
[[nodiscard]] std::string keyedDigest(std::string_view text, std::string_view key);

/// Compares two secrets in a time that tells nothing about where they differ.
[[nodiscard]] bool sameSecret(std::string_view one, std::string_view other);

} // namespace localservice
