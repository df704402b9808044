// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/jobs/jobrunner.h"

#include <string>
#include <string_view>
#include <vector>

namespace localservice {

/// The words of a command line: split at spaces, but not inside '…' or "…". There is
/// no other escape. Throws std::invalid_argument when a quotation mark or a placeholder's brace
/// is not closed, or nothing is there.
[[nodiscard]] std::vector<std::string> splitCommand(std::string_view command);

/// The words that run the built-in separator: the program teko-separate beside this one.
[[nodiscard]] std::vector<std::string> builtInCommand();

/// Separates with an external program: "{input}", "{instrument}", "{main}" and "{mix}" in its
/// words are filled in for every job. Its results are checked before they count: two WAV files as
/// long as the input.
[[nodiscard]] SeparateFunction separateByCommand(std::vector<std::string> words);

} // namespace localservice
