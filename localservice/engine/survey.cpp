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
    : m_wanted(static_cast<std::size_t>(wanted))
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
    add(m_history.frame(0).magnitudes);
}

void SongSurvey::add(const std::vector<float> &magnitudes)
{
    const std::vector<float> &mask = m_masks[m_wanted];
    for (std::size_t bin = 0; bin < mask.size(); ++bin) {
        const double energy = magnitudes[bin] * magnitudes[bin];
        m_energy += energy;
        for (std::size_t part = 0; part < partCount; ++part)
            m_shares[part] += energy * m_masks[part][bin];
        m_sure += energy * mask[bin] * mask[bin];
        if (bin < m_firstHighBin)
            continue;
        m_highShare += energy * mask[bin];
        m_highSure += energy * mask[bin] * mask[bin];
    }
}

Confidence SongSurvey::confidence() const
{
    const PresenceWeights &weights = presenceWeights[m_wanted];
    // What is too short to be judged speaks against nothing.
    if (m_shares[m_wanted] <= 0)
        return {m_heard > 0 ? 1.0F : 0.0F, weights.low};
    double evidence = weights.always + weights.sureness * m_sure / m_shares[m_wanted];
    for (std::size_t part = 0; part < partCount; ++part)
        evidence += weights.shares[part] * std::log(m_shares[part] / m_energy + faint);
    const double highShare = m_highShare + faint * m_energy;
    evidence += weights.highShare * std::log(highShare / m_energy)
        + weights.highSureness * m_highSure / highShare;
    return {weights.most / static_cast<float>(1 + std::exp(-evidence)), weights.low};
}

} // namespace localservice
