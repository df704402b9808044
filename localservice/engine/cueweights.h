// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/cues.h"
#include "localservice/engine/maskmodel.h"

namespace localservice {

/// What each cue says about each part, for MaskModel. Fitted to songs of known parts by
/// training/fit.py.
extern const std::array<std::int16_t, partCount * cueCount * weightKnots.size()> cueWeights;

/// How the presence of a part shows in the masks of a whole song.
struct PresenceWeights
{
    std::array<float, partCount> shares; ///< for each e-fold of each part's share of the energy
    float sureness; ///< for the mean of its masks, weighted by what they let through
    float highShare; ///< its share of the high frequencies: for the drums
    float highSureness; ///< the mean of its masks there
    float always;
    float most; ///< the greatest confidence
    float low; ///< below this the part seldom plays
};

/// For each part but the rest; fitted as above.
extern const std::array<PresenceWeights, partCount - 1> presenceWeights;

} // namespace localservice
