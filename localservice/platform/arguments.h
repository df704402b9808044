// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace localservice {

/// The words of the command line after the program's name, as UTF-8 on every system.
[[nodiscard]] std::vector<std::string> commandLineWords(int argc, char **argv);

} // namespace localservice
