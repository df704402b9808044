// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/survey.h"

#include "localservice/engine/cueweights.h"

#include <cmath>

namespace localservice {

namespace {

// From here on drums sound and little else.
constexpr float highHertz = 3000;
// Of a song's energy: so little that it says nothing.
constexpr double faint = 1e-3;

} // namespace

SongSurvey::SongSurvey(std::size_t channels, int sampleRate, Part wanted)
    : m_wanted(wanted)
    , m_history(channels)
    , m_meter(sampleRate)
    , m_model(cueWeights, static_cast<float>(sampleRate) / Stft::frameSize)
    , m_firstHighBin(static_cast<std::size_t>(
          std::lround(highHertz * Stft::frameSize / static_cast<float>(sampleRate))))
{ }

void SongSurvey::push(const Planes &in)
{
    m_history.push(in);
    // Medians need a full history.
    if (++m_heard < medianSpan)
        return;
    m_model.computeMasks(m_meter.measure(m_history).values, m_masks);
    add(m_history.frame(0).magnitudes, m_masks[static_cast<std::size_t>(m_wanted)]);
}

void SongSurvey::add(const std::vector<float> &magnitudes, const std::vector<float> &mask)
{
    for (std::size_t bin = 0; bin < mask.size(); ++bin) {
        const float energy = magnitudes[bin] * magnitudes[bin];
        Sums &sums = bin < m_firstHighBin ? m_low : m_high;
        m_energy += energy;
        sums.share += energy * mask[bin];
        sums.sure += energy * mask[bin] * mask[bin];
    }
}

float SongSurvey::confidence() const
{
    const double share = m_low.share + m_high.share;
    // Nothing was heard that could speak against the instrument.
    if (share <= 0)
        return 1;
    const PresenceWeights &weights = presenceWeights[static_cast<std::size_t>(m_wanted)];
    const double highShare = m_high.share + faint * m_energy;
    const double evidence = weights.share * std::log(share / m_energy)
        + weights.sureness * (m_low.sure + m_high.sure) / share
        + weights.highShare * std::log(highShare / m_energy)
        + weights.highSureness * m_high.sure / highShare + weights.always;
    return weights.most / static_cast<float>(1 + std::exp(-evidence));
}

} // namespace localservice
