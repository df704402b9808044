// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/masks.h"
#include "localservice/engine/medians.h"

#include <vector>

namespace localservice {

/// One hop of sound: Stft::hopSize samples for each channel.
using Planes = std::vector<std::vector<float>>;

/// Filters one part out of a stream of sound, hop by hop, in constant memory.
class Separator final
{
public:
    /// The latency in hops.
    static constexpr int delay = medianSpan / 2 + Stft::overlap - 1;

    Separator(std::size_t channels, int sampleRate, Part wanted, const PanPositions &positions);

    /// Takes one hop; `out` becomes the wanted part of the hop delay calls ago (silence before the
    /// first). Every channel is filtered alike, so that the image between the channels stays.
    void push(const Planes &in, Planes &out);

private:
    struct Frame
    {
        std::vector<Spectrum> channels;
        std::vector<float> magnitudes;
    };

    void analyse(const Planes &in, Frame &frame);
    void applyMask(Frame &frame, std::span<const float> sustained);
    void synthesise(const Frame &frame, Planes &out);
    [[nodiscard]] Frame &frameBefore(int hops);

    Stft m_stft;
    Part m_wanted;
    PanPositions m_positions;
    float m_hertzPerBin;
    std::vector<FrequencyWeights> m_weights;
    TimeMedians m_timeMedians;
    std::vector<float> m_transient;
    std::vector<Frame> m_frames; // a ring of medianSpan
    std::size_t m_newest = 0;
    Planes m_recent; // the latest Stft::frameSize samples of each channel
    Planes m_sums; // overlapped output, Stft::frameSize samples of each channel
};

} // namespace localservice
