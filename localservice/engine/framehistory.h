// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/medians.h"
#include "localservice/engine/stft.h"

namespace localservice {

/// One hop of sound: Stft::hopSize samples for each channel.
using Planes = std::vector<std::vector<float>>;

/// One spectrum of all channels.
struct Frame
{
    std::vector<Spectrum> channels;
    std::vector<float> magnitudes; ///< of all channels together
    std::vector<float> levels; ///< log2 of the magnitudes
    std::vector<float> peaks; ///< the largest magnitude of a bin and its neighbours
    std::vector<float> steadiness; ///< 1 where the phase runs on as a steady tone's does, to -1
};

/// The latest frames of a stream of sound. Cues are taken from the one in the middle, which has
/// as much future as past.
class FrameHistory final
{
public:
    /// How many frames lie before and after the one in the middle.
    static constexpr int reach = medianSpan / 2;

    explicit FrameHistory(std::size_t channels);

    /// Analyses one more hop.
    void push(const Planes &in);

    /// A frame by its distance from the middle: -reach to reach.
    [[nodiscard]] const Frame &frame(int distance) const;
    [[nodiscard]] Frame &middle();
    /// Medians over time around the middle: what lasts.
    [[nodiscard]] std::span<const float> sustained() const { return m_sustained; }
    /// The same of the peaks: what lasts while its pitch moves a little.
    [[nodiscard]] std::span<const float> wandering() const { return m_wandering; }
    /// Medians over frequency of the middle: what is struck.
    [[nodiscard]] std::span<const float> transient() const { return m_transient; }

private:
    void analyse(const Planes &in, Frame &frame);
    void measureSteadiness();

    Stft m_stft;
    Planes m_recent; // the latest Stft::frameSize samples of each channel
    std::vector<Frame> m_frames; // a ring of medianSpan
    std::size_t m_newest = 0;
    TimeMedians m_magnitudeMedians;
    TimeMedians m_peakMedians;
    std::span<const float> m_sustained;
    std::span<const float> m_wandering;
    std::vector<float> m_transient;
};

} // namespace localservice
