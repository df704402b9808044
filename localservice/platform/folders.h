// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

namespace localservice {

/// The system's folder for the user's data; "" when there is none.
[[nodiscard]] std::filesystem::path userDataFolder();

} // namespace localservice
