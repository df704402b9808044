// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace localservice {

/// The HTML of a page of the service, for the help menu of its clients; nothing for other paths.
[[nodiscard]] std::optional<std::string> pageAt(std::string_view path);

} // namespace localservice
