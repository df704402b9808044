// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/masks.h"
#include "localservice/engine/medians.h"

#include <vector>

namespace localservice {

/// One hop of sound, a row of Stft::kHop samples for each channel.
using Planes = std::vector<std::vector<float>>;

/// Filters one part out of a stream of sound, hop by hop, in memory that does not depend on its
/// length.
class Separator final
{
public:
    /// How many hops later the answer to a hop comes.
    static constexpr int kDelay = kMedianSpan / 2 + Stft::kOverlap - 1;

    Separator(std::size_t channels, int sampleRate, Part wanted, const Seating &seating);

    /// Takes one hop; `out` becomes the wanted part of the hop kDelay calls ago (silence before the
    /// first). Every channel is filtered alike, so that the image between the channels stays.
    void push(const Planes &in, Planes &out);

private:
    struct Frame
    {
        std::vector<Spectrum> channels;
        std::vector<float> magnitudes;
    };

    void analyse(const Planes &in, Frame &frame);
    void applyMask(Frame &frame, std::span<const float> lasting);
    void synthesise(const Frame &frame, Planes &out);
    [[nodiscard]] Frame &frameBefore(int hops);

    Stft m_stft;
    Part m_wanted;
    Seating m_seating;
    float m_hertzPerBin;
    std::vector<Bands> m_bands;
    TimeMedians m_timeMedians;
    std::vector<float> m_striking;
    std::vector<Frame> m_frames; // a ring of kMedianSpan
    std::size_t m_newest = 0;
    Planes m_heard; // the latest Stft::kFrame samples of each channel
    Planes m_sums; // overlapped output, Stft::kFrame samples of each channel
};

} // namespace localservice
