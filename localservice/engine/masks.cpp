// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/masks.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

    // How far from its seat an instrument is still heard, in units of pan.
    constexpr float kSeatWidth = 0.3F;
    // What a guitar or piano in the middle, beside the voice, may claim.
    constexpr float kUnseated = 0.35F;
    // The rest never gets less, so that a bin without evidence has an owner.
    constexpr float kLeastRest = 0.05F;

    float bell(float distance, float width)
    {
        const float x = distance / width;
        return std::exp(-x * x);
    }

    float above(float hertz, float edge)
    {
        const float x = hertz / edge;
        return x * x * x * x / (1 + x * x * x * x);
    }

    float below(float hertz, float edge)
    {
        return 1 - above(hertz, edge);
    }

    float inSeat(const std::optional<float> &seat, float pan, float unseated)
    {
        return seat ? bell(pan - *seat, kSeatWidth) : unseated;
    }

    float &at(Masks &masks, Part part)
    {
        return masks[static_cast<std::size_t>(part)];
    }

} // namespace

Bands::Bands(float hertz)
    : low(below(hertz, 220))
    , voice(above(hertz, 150) * below(hertz, 9000))
    , middle(above(hertz, 100) * below(hertz, 7000))
    , guitarRegister(hertz > 0 ? bell(std::log2(hertz / 700), 2) : 0)
{ }

Masks shareOut(const Cues &cues, const Bands &bands, const Seating &seating)
{
    const float strikes = cues.striking * cues.striking;
    const float lasts = cues.lasting * cues.lasting;
    const float all = strikes + lasts;
    const float struck = all > 0 ? strikes / all : 0;
    const float held = all > 0 ? lasts / all : 0;
    const float pan = cues.place.pan;
    const float middle = bell(pan, kSeatWidth) * cues.place.likeness;
    const float body = held * bands.middle * (1 - bands.low);
    const float unseated = kUnseated * middle;

    Masks evidence{};
    at(evidence, Part::Drums) = struck;
    at(evidence, Part::Bass) = held * bands.low * (0.4F + 0.6F * middle);
    at(evidence, Part::Vocals) = held * bands.voice * (1 - bands.low) * middle;
    at(evidence, Part::Guitar) =
        body * inSeat(seating.guitar, pan, unseated * bands.guitarRegister);
    at(evidence, Part::Piano) =
        body * inSeat(seating.piano, pan, unseated * (1 - bands.guitarRegister));
    const float strongest = *std::max_element(evidence.begin(), evidence.end());
    at(evidence, Part::Rest) = kLeastRest + 0.5F * std::max(0.0F, held - strongest);

    float sum = 0;
    for (float &value : evidence) {
        value *= value;
        sum += value;
    }
    for (float &value : evidence)
        value /= sum;
    return evidence;
}

} // namespace localservice
