// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace localservice {

/// The Argon2id hash of a password, with its salt. One computation runs at a time in the whole
/// program, so that many sign-ins at once do not fill the memory.
[[nodiscard]] std::string passwordHash(const std::string &password);

/// Whether a password belongs to a hash. Always false for an empty hash, after the same time.
[[nodiscard]] bool passwordMatches(const std::string &hash, const std::string &password);

} // namespace localservice
