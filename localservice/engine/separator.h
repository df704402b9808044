// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/cues.h"
#include "localservice/engine/maskmodel.h"

namespace localservice {

/// Filters one part out of a stream of sound, hop by hop, in constant memory.
class Separator final
{
public:
    /// The latency in hops.
    static constexpr int delay = FrameHistory::reach + Stft::overlap - 1;

    /// All of the part's masks are scaled by `gain`, 0 to 1.
    Separator(std::size_t channels, int sampleRate, Part wanted, float gain);

    /// Takes one hop; `out` becomes the wanted part of the hop delay calls ago (silence before the
    /// first). Every channel is filtered alike, so that the image between the channels stays.
    void push(const Planes &in, Planes &out);

private:
    void synthesise(const Frame &frame, Planes &out);

    Part m_wanted;
    float m_gain;
    FrameHistory m_history;
    CueMeter m_meter;
    MaskModel m_model;
    FrameMasks m_masks;
    Stft m_stft;
    Planes m_sums; // overlapped output, Stft::frameSize samples of each channel
};

} // namespace localservice
