// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/part.h"
#include "localservice/engine/stereofield.h"

#include <array>

namespace localservice {

/// What the masks of one bin of one frame are computed from.
struct Cues
{
    float sustained = 0; ///< median over time
    float transient = 0; ///< median over frequency
    StereoPosition position;
};

/// The share of a bin that each part gets: every one in [0, 1], all together one.
using Masks = std::array<float, partCount>;

/// Weights that depend on the frequency alone; the same for all frames, so computed once a bin.
struct FrequencyWeights
{
    explicit FrequencyWeights(float hertz);

    float low; ///< where the bass plays
    float voice; ///< where voices sound
    float middle; ///< where guitars and pianos sound
    float guitarRegister; ///< nearer to a guitar's usual register than to a piano's
};

/// Divides a bin among the parts by its cues.
[[nodiscard]] Masks computeMasks(const Cues &cues, const FrequencyWeights &weights,
                                 const PanPositions &positions);

} // namespace localservice
