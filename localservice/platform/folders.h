// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

namespace localservice {

/// The system's folder for the user's data; "" when there is none.
[[nodiscard]] std::filesystem::path userDataFolder();

/// The path of another program in this program's folder; only its name when the system does not
/// know the folder.
[[nodiscard]] std::filesystem::path siblingProgram(const std::string &name);

} // namespace localservice
