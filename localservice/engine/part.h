// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace localservice {

/// The parts of a song. Rest is whatever belongs to none of the five instruments.
enum class Part { Guitar, Vocals, Piano, Bass, Drums, Rest };

inline constexpr std::size_t partCount = 6;

/// The protocol's words for the five instruments, in the order of Part.
inline constexpr std::array<std::string_view, partCount - 1> instrumentWords = {
    "guitar", "vocals", "piano", "bass", "drums"};

/// The instrument of a client's word, compared as it stands; nothing for any other word.
[[nodiscard]] constexpr std::optional<Part> instrumentFromWord(std::string_view word)
{
    for (std::size_t i = 0; i < instrumentWords.size(); ++i) {
        if (instrumentWords[i] == word)
            return static_cast<Part>(i);
    }
    return std::nullopt;
}

} // namespace localservice
