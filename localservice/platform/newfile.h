// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <system_error>

namespace localservice {

/// Creates an empty file. Returns std::errc::file_exists when there is something of that name
/// already, which stays as it is, or why else there is no new file.
[[nodiscard]] std::error_code createNewFile(const std::filesystem::path &path);

} // namespace localservice
