// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/pitch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace localservice {

namespace {

// Candidates are a quarter tone apart.
constexpr float candidateStep = 1.0293F;
// A candidate near the latest fundamental is preferred by this factor: tones last.
constexpr float continuity = 1.15F;
constexpr float nearRatio = 1.07F;
// A larger step in semitones is another tone.
constexpr float greatestStep = 1.5F;
// How fast the motion follows.
constexpr float motionRate = 0.15F;
// The weight of each harmonic against the one below.
constexpr float harmonicDecay = 0.85F;
// How wide a harmonic is in the spectrum, in bins.
constexpr float harmonicWidth = 1.3F;
// Beyond this many harmonics a fundamental is too coarse to say where they lie.
constexpr int reliableHarmonics = 25;

float valueAt(std::span<const float> values, float position)
{
    const auto index = static_cast<std::size_t>(position);
    if (index + 1 >= values.size())
        return 0;
    const float share = position - static_cast<float>(index);
    return values[index] * (1 - share) + values[index + 1] * share;
}

// How near a bin is to a harmonic of a fundamental: 0 to 1.
float nearness(float bin, float fundamental)
{
    const float number = std::round(bin / fundamental);
    if (number < 1 || number > reliableHarmonics)
        return 0;
    const float distance = (bin - number * fundamental) / (harmonicWidth + 0.01F * bin);
    return std::exp(-distance * distance);
}

} // namespace

PitchComb::PitchComb(float hertzPerBin, float lowest, float highest, int harmonics)
    : m_harmonics(harmonics)
{
    for (float hertz = lowest; hertz < highest; hertz *= candidateStep)
        m_candidates.push_back(hertz / hertzPerBin);
}

float PitchComb::score(float bins) const
{
    float sum = 0;
    float weight = 1;
    float all = 0;
    for (int number = 1; number <= m_harmonics; ++number) {
        const float position = bins * static_cast<float>(number);
        // What lies between the harmonics speaks for another fundamental.
        sum += weight
            * (valueAt(m_compressed, position) - 0.5F * valueAt(m_compressed, position - bins / 2)
               - 0.3F * valueAt(m_compressed, position - bins / 3));
        all += weight;
        weight *= harmonicDecay;
    }
    return sum / all;
}

// The fundamental between two candidates.
float PitchComb::refined(float bins) const
{
    const float step = std::sqrt(candidateStep);
    const float below = score(bins / step);
    const float at = score(bins);
    const float above = score(bins * step);
    const float bend = below - 2 * at + above;
    const float shift = bend < 0 ? std::clamp(0.5F * (below - above) / bend, -1.0F, 1.0F) : 0;
    return bins * std::pow(step, shift);
}

float PitchComb::strongestFundamental()
{
    float strongest = 0;
    float highestScore = -std::numeric_limits<float>::max();
    for (const float bins : m_candidates) {
        const float ratio = m_latest > 0 ? bins / m_latest : 0;
        const bool lasts = ratio > 1 / nearRatio && ratio < nearRatio;
        const float preferred = score(bins) * (lasts ? continuity : 1);
        if (preferred > highestScore) {
            highestScore = preferred;
            strongest = bins;
        }
    }
    const float greatest = *std::max_element(m_compressed.begin(), m_compressed.end());
    m_salience = greatest > 0 ? std::clamp(highestScore / greatest, 0.0F, 1.0F) : 0;
    return refined(strongest);
}

void PitchComb::trace(std::span<const float> magnitudes, std::span<float> comb)
{
    m_compressed.resize(magnitudes.size());
    std::transform(magnitudes.begin(), magnitudes.end(), m_compressed.begin(),
                   [](float magnitude) { return std::sqrt(magnitude); });
    const float fundamental = strongestFundamental();
    const float step = m_latest > 0 ? 12 * std::abs(std::log2(fundamental / m_latest)) : 0;
    m_motion += motionRate * ((step < greatestStep ? step : 0) - m_motion);
    m_latest = fundamental;
    for (std::size_t bin = 0; bin < comb.size(); ++bin)
        comb[bin] = m_salience * nearness(static_cast<float>(bin), fundamental);
}

} // namespace localservice
