// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/masks.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

// The width of an instrument in the stereo field, in units of pan.
constexpr float panWidth = 0.3F;
// The weight of a guitar or piano that is mixed to the centre, beside the voice.
constexpr float centreShare = 0.35F;
// The rest never gets less, so that a bin without any evidence goes somewhere.
constexpr float minRest = 0.05F;

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

float atPosition(const std::optional<float> &position, float pan, float unplaced)
{
    return position ? bell(pan - *position, panWidth) : unplaced;
}

float &at(Masks &masks, Part part)
{
    return masks[static_cast<std::size_t>(part)];
}

} // namespace

FrequencyWeights::FrequencyWeights(float hertz)
    : low(below(hertz, 220))
    , voice(above(hertz, 150) * below(hertz, 9000))
    , middle(above(hertz, 100) * below(hertz, 7000))
    , guitarRegister(hertz > 0 ? bell(std::log2(hertz / 700), 2) : 0)
{ }

Masks computeMasks(const Cues &cues, const FrequencyWeights &weights, const PanPositions &positions)
{
    const float transientPower = cues.transient * cues.transient;
    const float sustainedPower = cues.sustained * cues.sustained;
    const float all = transientPower + sustainedPower;
    const float transientShare = all > 0 ? transientPower / all : 0;
    const float sustainedShare = all > 0 ? sustainedPower / all : 0;
    const float pan = cues.position.pan;
    const float middle = bell(pan, panWidth) * cues.position.similarity;
    const float body = sustainedShare * weights.middle * (1 - weights.low);
    const float unplaced = centreShare * middle;

    Masks evidence{};
    at(evidence, Part::Drums) = transientShare;
    at(evidence, Part::Bass) = sustainedShare * weights.low * (0.4F + 0.6F * middle);
    at(evidence, Part::Vocals) = sustainedShare * weights.voice * (1 - weights.low) * middle;
    at(evidence, Part::Guitar) =
        body * atPosition(positions.guitar, pan, unplaced * weights.guitarRegister);
    at(evidence, Part::Piano) =
        body * atPosition(positions.piano, pan, unplaced * (1 - weights.guitarRegister));
    const float strongest = *std::max_element(evidence.begin(), evidence.end());
    at(evidence, Part::Rest) = minRest + 0.5F * std::max(0.0F, sustainedShare - strongest);

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
