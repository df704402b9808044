// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/maskmodel.h"

#include "localservice/engine/stft.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

using KnotWeights = std::span<const std::int16_t, weightKnots.size()>;

float weightAt(float hertz, KnotWeights weights)
{
    constexpr float unit = 0.001F;
    const auto above = std::upper_bound(weightKnots.begin(), weightKnots.end(), hertz);
    if (above == weightKnots.begin())
        return unit * weights.front();
    if (above == weightKnots.end())
        return unit * weights.back();
    const auto next = static_cast<std::size_t>(above - weightKnots.begin());
    const float share = std::log2(hertz / above[-1]) / std::log2(above[0] / above[-1]);
    return unit * (weights[next - 1] * (1 - share) + weights[next] * share);
}

// Turns evidence into shares, bin by bin.
void normalise(FrameMasks &masks)
{
    for (std::size_t bin = 0; bin < masks.front().size(); ++bin) {
        float strongest = masks.front()[bin];
        for (const std::vector<float> &mask : masks)
            strongest = std::max(strongest, mask[bin]);
        float sum = 0;
        for (std::vector<float> &mask : masks)
            sum += mask[bin] = std::exp(mask[bin] - strongest);
        for (std::vector<float> &mask : masks)
            mask[bin] /= sum;
    }
}

} // namespace

MaskModel::MaskModel(std::span<const std::int16_t> weights, float hertzPerBin)
{
    const std::size_t cueCount = weights.size() / partCount / weightKnots.size();
    std::size_t at = 0;
    for (auto &ofPart : m_weights) {
        ofPart.assign(cueCount, std::vector<float>(Stft::binCount));
        for (std::vector<float> &ofCue : ofPart) {
            const KnotWeights atKnots(weights.subspan(at, weightKnots.size()));
            for (std::size_t bin = 0; bin < ofCue.size(); ++bin)
                ofCue[bin] = weightAt(static_cast<float>(bin) * hertzPerBin, atKnots);
            at += weightKnots.size();
        }
    }
}

void MaskModel::computeMasks(std::span<const std::vector<float>> cues, FrameMasks &masks) const
{
    for (std::size_t part = 0; part < partCount; ++part) {
        std::vector<float> &mask = masks[part];
        mask.assign(Stft::binCount, 0);
        for (std::size_t cue = 0; cue < cues.size(); ++cue) {
            const std::vector<float> &weights = m_weights[part][cue];
            const std::vector<float> &values = cues[cue];
            for (std::size_t bin = 0; bin < mask.size(); ++bin)
                mask[bin] += weights[bin] * values[bin];
        }
    }
    normalise(masks);
}

} // namespace localservice
