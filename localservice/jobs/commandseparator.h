// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/jobs/runner.h"

#include <string>
#include <string_view>
#include <vector>

namespace localservice {

/// The words of a command as a user writes it: split at spaces, but not inside '…' or "…". There is
/// no other escape. Throws std::invalid_argument when a quotation mark is not closed or nothing is
/// there.
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view command);

/// Separates with a program of the user's: "{input}", "{instrument}", "{main}" and "{mix}" in its
/// words are filled in for every job. Its results are checked before they count: two WAV files as
/// long as the input.
[[nodiscard]] Separate separateByCommand(std::vector<std::string> words);

} // namespace localservice
