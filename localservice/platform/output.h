// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

namespace localservice {

/// Appends to a file, from now on, what goes to standard error. Nothing changes when the file
/// cannot be opened.
void appendErrorsTo(const std::filesystem::path &file);

} // namespace localservice
