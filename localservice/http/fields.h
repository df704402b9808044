// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace localservice {

/// A request that is not well formed; what() is a sentence about it. Answered with status 400.
class BadRequest final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The named texts of a form.
class Fields final
{
public:
    /// The largest form body, and what one field or all parts of an upload may hold, in bytes.
    static constexpr std::size_t maxBytes = 65536;
    static constexpr std::size_t maxFields = 32;

    /// The fields of an application/x-www-form-urlencoded body; throws BadRequest.
    [[nodiscard]] static Fields fromForm(std::string_view body);

    /// The text of a field, "" when it is missing.
    [[nodiscard]] const std::string &operator[](std::string_view name) const;
    /// Adds to the end of a field; throws BadRequest when there are too many or too long ones.
    void append(std::string_view name, std::string_view text);
    /// Throws BadRequest unless all fields, complete by now, are text in UTF-8.
    void checkText() const;

private:
    std::map<std::string, std::string, std::less<>> m_texts;
    std::size_t m_bytes = 0;
};

/// The part of a client's path behind the last slash or backslash.
[[nodiscard]] std::string baseName(std::string_view path);

} // namespace localservice
