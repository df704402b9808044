// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

namespace localservice {

/// A path as UTF-8, which Poco and other programs expect on every system.
[[nodiscard]] inline std::string utf8(const std::filesystem::path &path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// The path that UTF-8 text names.
[[nodiscard]] inline std::filesystem::path pathFromUtf8(const std::string &text)
{
    return std::u8string(text.begin(), text.end());
}

} // namespace localservice
