// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/stft.h"

#include <array>
#include <optional>

namespace localservice {

/// Where a bin lies between the channels.
struct StereoPosition
{
    float pan = 0; ///< -1 left, 0 middle, 1 right
    float similarity = 1; ///< 0 the channels differ wholly, 1 they are alike
};

/// The position of one bin, from the energy of its two channels and their agreement.
[[nodiscard]] StereoPosition positionOf(std::complex<float> left, std::complex<float> right);

/// Where the guitar and the piano of a song are panned; empty where they are not.
struct PanPositions
{
    std::optional<float> guitar;
    std::optional<float> piano;
};

/// Measures the stereo field of a song, to find out where guitar and piano are panned: collects, by
/// pan position, the energy and how sharp its attacks are. Energy in the centre does not count.
class StereoField final
{
public:
    explicit StereoField(float hertzPerBin);

    /// Takes two neighbouring frames of the left and the right channel.
    void add(const std::array<Spectrum, 2> &before, const std::array<Spectrum, 2> &now);
    /// The side with the sharper attacks is the piano's, the other one the guitar's.
    [[nodiscard]] PanPositions positions() const;

private:
    static constexpr int slotCount = 41;

    struct Slot
    {
        double energy = 0;
        double amplitude = 0;
        double attack = 0;
    };
    struct Side
    {
        double energy = 0;
        float pan = 0;
        double sharpness = 0;
    };

    [[nodiscard]] Side side(int first, int last) const;

    std::array<Slot, slotCount> m_slots;
    std::size_t m_firstBin;
    std::size_t m_lastBin;
};

} // namespace localservice
