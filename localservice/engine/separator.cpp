// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/separator.h"

#include <algorithm>
#include <cmath>

namespace localservice {

Separator::Separator(std::size_t channels, int sampleRate, Part wanted,
                     const PanPositions &positions)
    : m_wanted(wanted)
    , m_positions(positions)
    , m_hertzPerBin(static_cast<float>(sampleRate) / Stft::frameSize)
    , m_timeMedians(Stft::binCount)
    , m_transient(Stft::binCount)
    , m_frames(medianSpan,
               {std::vector<Spectrum>(channels, Spectrum(Stft::binCount)),
                std::vector<float>(Stft::binCount)})
    , m_recent(channels, std::vector<float>(Stft::frameSize))
    , m_sums(channels, std::vector<float>(Stft::frameSize))
{
    m_weights.reserve(Stft::binCount);
    for (int bin = 0; bin < Stft::binCount; ++bin)
        m_weights.emplace_back(static_cast<float>(bin) * m_hertzPerBin);
}

void Separator::push(const Planes &in, Planes &out)
{
    m_newest = (m_newest + 1) % m_frames.size();
    Frame &newest = m_frames[m_newest];
    const std::vector<float> oldest = newest.magnitudes;
    analyse(in, newest);
    const std::span<const float> sustained = m_timeMedians.push(oldest, newest.magnitudes);
    Frame &centre = frameBefore(medianSpan / 2);
    applyMask(centre, sustained);
    synthesise(centre, out);
}

Separator::Frame &Separator::frameBefore(int hops)
{
    return m_frames[(m_newest + m_frames.size() - static_cast<std::size_t>(hops))
                    % m_frames.size()];
}

void Separator::analyse(const Planes &in, Frame &frame)
{
    std::fill(frame.magnitudes.begin(), frame.magnitudes.end(), 0.0F);
    for (std::size_t channel = 0; channel < m_recent.size(); ++channel) {
        std::vector<float> &recent = m_recent[channel];
        std::copy(recent.begin() + Stft::hopSize, recent.end(), recent.begin());
        std::copy(in[channel].begin(), in[channel].end(), recent.end() - Stft::hopSize);
        m_stft.forward(recent, frame.channels[channel]);
        for (int bin = 0; bin < Stft::binCount; ++bin)
            frame.magnitudes[bin] += std::norm(frame.channels[channel][bin]);
    }
    for (float &magnitude : frame.magnitudes)
        magnitude = std::sqrt(magnitude);
}

void Separator::applyMask(Frame &frame, std::span<const float> sustained)
{
    frequencyMedians(frame.magnitudes, m_transient);
    const bool wide = frame.channels.size() > 1;
    for (int bin = 0; bin < Stft::binCount; ++bin) {
        const StereoPosition place =
            wide ? positionOf(frame.channels[0][bin], frame.channels[1][bin]) : StereoPosition{};
        const Cues cues{sustained[bin], m_transient[bin], place};
        const float mask =
            computeMasks(cues, m_weights[bin], m_positions)[static_cast<std::size_t>(m_wanted)];
        for (Spectrum &spectrum : frame.channels)
            spectrum[bin] *= mask;
    }
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
