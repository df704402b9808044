// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/pitch.h"

#include <algorithm>
#include <cmath>

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

} // namespace

PitchComb::PitchComb(float hertzPerBin, float lowest, float highest, int harmonics)
    : m_harmonics(harmonics)
{
    for (float hertz = lowest; hertz < highest; hertz *= candidateStep)
        m_candidates.push_back({hertz / hertzPerBin, 0});
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

void PitchComb::trace(std::span<const float> magnitudes, std::span<float> comb)
{
    m_compressed.resize(magnitudes.size());
    float strongest = 0;
    for (std::size_t bin = 0; bin < magnitudes.size(); ++bin) {
        m_compressed[bin] = std::sqrt(magnitudes[bin]);
        strongest = std::max(strongest, m_compressed[bin]);
    }
    const Candidate *best = &m_candidates.front();
    for (Candidate &candidate : m_candidates) {
        candidate.score = score(candidate.bins);
        const float ratio = m_latest > 0 ? candidate.bins / m_latest : 0;
        if (ratio > 1 / nearRatio && ratio < nearRatio)
            candidate.score *= continuity;
        if (candidate.score > best->score)
            best = &candidate;
    }
    const float fundamental = refined(best->bins);
    const float step = m_latest > 0 ? 12 * std::abs(std::log2(fundamental / m_latest)) : 0;
    m_motion += motionRate * ((step < greatestStep ? step : 0) - m_motion);
    m_latest = fundamental;
    m_salience = strongest > 0 ? std::clamp(best->score / strongest, 0.0F, 1.0F) : 0;
    std::fill(comb.begin(), comb.end(), 0.0F);
    for (std::size_t bin = 1; bin < comb.size(); ++bin) {
        const float number = std::round(static_cast<float>(bin) / m_latest);
        if (number < 1 || number > reliableHarmonics)
            continue;
        const float distance = (static_cast<float>(bin) - number * m_latest)
            / (harmonicWidth + 0.01F * static_cast<float>(bin));
        comb[bin] = m_salience * std::exp(-distance * distance);
    }
}

} // namespace localservice
