// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/part.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace localservice {

/// For each part, the share of every bin that it gets: in [0, 1], all parts together one.
using FrameMasks = std::array<std::vector<float>, partCount>;

/// The frequencies between which a cue's weight changes evenly, by octaves.
inline constexpr std::array<float, 10> weightKnots = {30,   60,   125,  250,  500,
                                                      1000, 2000, 4000, 8000, 16000};

/// Divides frames among the parts: each cue speaks for or against a part by a weight of its own,
/// which depends on the frequency.
class MaskModel final
{
public:
    /// `weights` are thousandths: for each part, for each cue, one at each of weightKnots.
    MaskModel(std::span<const std::int16_t> weights, float hertzPerBin);

    /// `cues` holds the values of each cue at all bins.
    void computeMasks(std::span<const std::vector<float>> cues, FrameMasks &masks) const;

private:
    std::array<std::vector<std::vector<float>>, partCount> m_weights; // of each cue, at all bins
};

} // namespace localservice
