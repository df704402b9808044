// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

namespace localservice {

/// Where the user's programs keep their data on this system; "" when the system does not say.
[[nodiscard]] std::filesystem::path userDataFolder();

} // namespace localservice
