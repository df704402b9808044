// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace localservice {

/// Writes one line with the time to standard error; control characters become spaces, so that no
/// text from outside can forge a line. Thread-safe.
void log(std::string_view message);

} // namespace localservice
