// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/framehistory.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

// Added to magnitudes before their logarithm is taken.
constexpr float silence = 1e-4F;
// How many bins to either side the pitch of a lasting tone may move.
constexpr int wanderBins = 2;

void computePeaks(std::span<const float> magnitudes, std::span<float> peaks)
{
    const int count = static_cast<int>(magnitudes.size());
    for (int bin = 0; bin < count; ++bin) {
        const auto first = magnitudes.begin() + std::max(0, bin - wanderBins);
        const auto last = magnitudes.begin() + std::min(count, bin + wanderBins + 1);
        peaks[bin] = *std::max_element(first, last);
    }
}

// How far the phase of a bin runs on from frame to frame as it ran before, and how far it could.
void addSteadiness(std::complex<float> before, std::complex<float> at, std::complex<float> after,
                   float &part, float &whole)
{
    // Plain arithmetic: std::complex multiplies slowly because it minds infinities.
    const float pastReal = at.real() * before.real() + at.imag() * before.imag();
    const float pastImag = at.imag() * before.real() - at.real() * before.imag();
    const float nextReal = after.real() * at.real() + after.imag() * at.imag();
    const float nextImag = after.imag() * at.real() - after.real() * at.imag();
    part += pastReal * nextReal + pastImag * nextImag;
    whole += std::sqrt((pastReal * pastReal + pastImag * pastImag)
                       * (nextReal * nextReal + nextImag * nextImag));
}

} // namespace

FrameHistory::FrameHistory(std::size_t channels)
    : m_recent(channels, std::vector<float>(Stft::frameSize))
    , m_frames(medianSpan,
               {std::vector<Spectrum>(channels, Spectrum(Stft::binCount)),
                std::vector<float>(Stft::binCount),
                std::vector<float>(Stft::binCount, std::log2(silence)),
                std::vector<float>(Stft::binCount), std::vector<float>(Stft::binCount)})
    , m_magnitudeMedians(Stft::binCount)
    , m_peakMedians(Stft::binCount)
    , m_transient(Stft::binCount)
{ }

void FrameHistory::push(const Planes &in)
{
    m_newest = (m_newest + 1) % m_frames.size();
    Frame &newest = m_frames[m_newest];
    const std::vector<float> oldMagnitudes = newest.magnitudes;
    const std::vector<float> oldPeaks = newest.peaks;
    analyse(in, newest);
    measureSteadiness();
    m_sustained = m_magnitudeMedians.push(oldMagnitudes, newest.magnitudes);
    m_wandering = m_peakMedians.push(oldPeaks, newest.peaks);
    frequencyMedians(frame(0).magnitudes, m_transient);
}

const Frame &FrameHistory::frame(int distance) const
{
    const std::size_t back = static_cast<std::size_t>(reach - distance);
    return m_frames[(m_newest + m_frames.size() - back) % m_frames.size()];
}

Frame &FrameHistory::middle()
{
    return m_frames[(m_newest + m_frames.size() - reach) % m_frames.size()];
}

// Of the second newest frame: it takes one before and one after.
void FrameHistory::measureSteadiness()
{
    const std::size_t count = m_frames.size();
    const Frame &after = m_frames[m_newest];
    Frame &at = m_frames[(m_newest + count - 1) % count];
    const Frame &before = m_frames[(m_newest + count - 2) % count];
    for (int bin = 0; bin < Stft::binCount; ++bin) {
        float part = 0;
        float whole = 1e-12F;
        for (std::size_t channel = 0; channel < m_recent.size(); ++channel)
            addSteadiness(before.channels[channel][bin], at.channels[channel][bin],
                          after.channels[channel][bin], part, whole);
        at.steadiness[bin] = part / whole;
    }
}

void FrameHistory::analyse(const Planes &in, Frame &frame)
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
    for (int bin = 0; bin < Stft::binCount; ++bin) {
        frame.magnitudes[bin] = std::sqrt(frame.magnitudes[bin]);
        frame.levels[bin] = std::log2(frame.magnitudes[bin] + silence);
    }
    computePeaks(frame.magnitudes, frame.peaks);
}

} // namespace localservice
