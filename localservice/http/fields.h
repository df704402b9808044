// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace localservice {

/// A malformed request; what() is an error message.
class BadRequest final : public std::runtime_error
{
public:
    /// `status` is the HTTP status to answer with.
    explicit BadRequest(const std::string &sentence, int status = 400)
        : std::runtime_error(sentence)
        , m_status(status)
    { }

    [[nodiscard]] int status() const { return m_status; }

private:
    int m_status;
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
    /// Whether text is UTF-8 without null characters.
    [[nodiscard]] static bool isText(std::string_view text);

private:
    std::map<std::string, std::string, std::less<>> m_texts;
    std::size_t m_bytes = 0;
};

/// The part of a client's path behind the last slash or backslash.
[[nodiscard]] std::string baseName(std::string_view path);

} // namespace localservice
