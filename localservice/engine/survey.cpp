// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/survey.h"

#include "localservice/engine/cueweights.h"

#include <cmath>

namespace localservice {

SongSurvey::SongSurvey(std::size_t channels, int sampleRate, Part wanted)
    : m_wanted(wanted)
    , m_history(channels)
    , m_meter(sampleRate)
    , m_model(cueWeights, static_cast<float>(sampleRate) / Stft::frameSize)
{ }

void SongSurvey::push(const Planes &in)
{
    m_history.push(in);
    // Medians need a full history.
    if (++m_heard < medianSpan)
        return;
    m_model.computeMasks(m_meter.measure(m_history).values, m_masks);
    const std::vector<float> &mask = m_masks[static_cast<std::size_t>(m_wanted)];
    const std::vector<float> &magnitudes = m_history.frame(0).magnitudes;
    for (std::size_t bin = 0; bin < mask.size(); ++bin) {
        const float energy = magnitudes[bin] * magnitudes[bin];
        m_energy += energy;
        m_share += energy * mask[bin];
        m_sure += energy * mask[bin] * mask[bin];
    }
}

float SongSurvey::confidence() const
{
    // Nothing was heard that could speak against the instrument.
    if (m_share <= 0)
        return 1;
    const PresenceWeights &weights = presenceWeights[static_cast<std::size_t>(m_wanted)];
    const double evidence = weights.share * std::log(m_share / m_energy)
        + weights.sureness * m_sure / m_share + weights.always;
    return static_cast<float>(1 / (1 + std::exp(-evidence)));
}

} // namespace localservice
