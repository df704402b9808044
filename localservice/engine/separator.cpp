// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/separator.h"

#include <algorithm>
#include <cmath>

namespace localservice {

Separator::Separator(std::size_t channels, int sampleRate, Part wanted, const Seating &seating)
    : m_wanted(wanted)
    , m_seating(seating)
    , m_hertzPerBin(static_cast<float>(sampleRate) / Stft::kFrame)
    , m_timeMedians(Stft::kBins)
    , m_striking(Stft::kBins)
    , m_frames(
          kMedianSpan,
          {std::vector<Spectrum>(channels, Spectrum(Stft::kBins)), std::vector<float>(Stft::kBins)})
    , m_heard(channels, std::vector<float>(Stft::kFrame))
    , m_sums(channels, std::vector<float>(Stft::kFrame))
{
    m_bands.reserve(Stft::kBins);
    for (int bin = 0; bin < Stft::kBins; ++bin)
        m_bands.emplace_back(static_cast<float>(bin) * m_hertzPerBin);
}

void Separator::push(const Planes &in, Planes &out)
{
    m_newest = (m_newest + 1) % m_frames.size();
    Frame &newest = m_frames[m_newest];
    const std::vector<float> oldest = newest.magnitudes;
    analyse(in, newest);
    const std::span<const float> lasting = m_timeMedians.push(oldest, newest.magnitudes);
    Frame &centre = frameBefore(kMedianSpan / 2);
    applyMask(centre, lasting);
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
    for (std::size_t channel = 0; channel < m_heard.size(); ++channel) {
        std::vector<float> &heard = m_heard[channel];
        std::copy(heard.begin() + Stft::kHop, heard.end(), heard.begin());
        std::copy(in[channel].begin(), in[channel].end(), heard.end() - Stft::kHop);
        m_stft.forward(heard, frame.channels[channel]);
        for (int bin = 0; bin < Stft::kBins; ++bin)
            frame.magnitudes[bin] += std::norm(frame.channels[channel][bin]);
    }
    for (float &magnitude : frame.magnitudes)
        magnitude = std::sqrt(magnitude);
}

void Separator::applyMask(Frame &frame, std::span<const float> lasting)
{
    frequencyMedians(frame.magnitudes, m_striking);
    const bool wide = frame.channels.size() > 1;
    for (int bin = 0; bin < Stft::kBins; ++bin) {
        const Place place =
            wide ? placeOf(frame.channels[0][bin], frame.channels[1][bin]) : Place{};
        const Cues cues{lasting[bin], m_striking[bin], place};
        const float mask =
            shareOut(cues, m_bands[bin], m_seating)[static_cast<std::size_t>(m_wanted)];
        for (Spectrum &spectrum : frame.channels)
            spectrum[bin] *= mask;
    }
}

void Separator::synthesise(const Frame &frame, Planes &out)
{
    for (std::size_t channel = 0; channel < m_sums.size(); ++channel) {
        std::vector<float> &sum = m_sums[channel];
        m_stft.addInverse(frame.channels[channel], sum);
        out[channel].assign(sum.begin(), sum.begin() + Stft::kHop);
        std::copy(sum.begin() + Stft::kHop, sum.end(), sum.begin());
        std::fill(sum.end() - Stft::kHop, sum.end(), 0.0F);
    }
}

} // namespace localservice
