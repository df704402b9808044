// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

namespace localservice {

/// Copies the first seconds of a WAV file into a new one. Throws Refusal when that fails.
void copyBeginning(const std::filesystem::path &source, double seconds,
                   const std::filesystem::path &target);

} // namespace localservice
