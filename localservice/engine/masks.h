// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/panorama.h"
#include "localservice/engine/part.h"

#include <array>

namespace localservice {

/// What is known about one bin of one frame.
struct Cues
{
    float lasting = 0; ///< median over time
    float striking = 0; ///< median over frequency
    Place place;
};

/// The share of a bin that each part gets: every one in [0, 1], all together one.
using Masks = std::array<float, kParts>;

/// What only the frequency decides; the same for all frames, so computed once a bin.
struct Bands
{
    explicit Bands(float hertz);

    float low; ///< where the bass plays
    float voice; ///< where voices sound
    float middle; ///< where guitars and pianos sound
    float guitarRegister; ///< nearer to a guitar's usual register than to a piano's
};

/// Shares a bin out among the parts by its cues.
[[nodiscard]] Masks shareOut(const Cues &cues, const Bands &bands, const Seating &seating);

} // namespace localservice
