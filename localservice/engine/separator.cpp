// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/separator.h"

#include "localservice/engine/cueweights.h"

#include <algorithm>

namespace localservice {

Separator::Separator(std::size_t channels, int sampleRate, Part wanted, float gain)
    : m_wanted(wanted)
    , m_gain(gain)
    , m_history(channels)
    , m_meter(sampleRate)
    , m_model(cueWeights, static_cast<float>(sampleRate) / Stft::frameSize)
    , m_sums(channels, std::vector<float>(Stft::frameSize))
{ }

void Separator::push(const Planes &in, Planes &out)
{
    m_history.push(in);
    m_model.computeMasks(m_meter.measure(m_history).values, m_masks);
    const std::vector<float> &mask = m_masks[static_cast<std::size_t>(m_wanted)];
    Frame &frame = m_history.middle();
    for (Spectrum &spectrum : frame.channels) {
        for (std::size_t bin = 0; bin < spectrum.size(); ++bin)
            spectrum[bin] *= m_gain * mask[bin];
    }
    synthesise(frame, out);
}

void Separator::synthesise(const Frame &frame, Planes &out)
{
    for (std::size_t channel = 0; channel < m_sums.size(); ++channel) {
        std::vector<float> &sum = m_sums[channel];
        m_stft.addInverse(frame.channels[channel], sum);
        out[channel].assign(sum.begin(), sum.begin() + Stft::hopSize);
        std::copy(sum.begin() + Stft::hopSize, sum.end(), sum.begin());
        std::fill(sum.end() - Stft::hopSize, sum.end(), 0.0F);
    }
}

} // namespace localservice
