// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace localservice {

/// UTF-8 text for one line of a log: control characters, line separators and what changes the
/// direction of text become spaces, broken bytes U+FFFD, so that no text from outside forges a
/// line.
[[nodiscard]] std::string printable(std::string_view text);

/// Writes one printable line with the time to standard error. Thread-safe.
void log(std::string_view message);

} // namespace localservice
