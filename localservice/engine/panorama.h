// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/stft.h"

#include <array>
#include <optional>

namespace localservice {

/// Where a bin lies between the channels.
struct Place
{
    float pan = 0; ///< -1 left, 0 middle, 1 right
    float likeness = 1; ///< 0 the channels differ wholly, 1 they are alike
};

/// The place of one bin, by the energy of its two channels and their agreement.
[[nodiscard]] Place placeOf(std::complex<float> left, std::complex<float> right);

/// Where the guitar and the piano of a song stand, when they stand aside: pan positions.
struct Seating
{
    std::optional<float> guitar;
    std::optional<float> piano;
};

/// Listens to a song once, to find out who sits where: collects, by place, how much energy there is
/// and how sharply it sets in. Energy in the middle says nothing about seats.
class Panorama final
{
public:
    explicit Panorama(float hertzPerBin);

    /// Takes two neighbouring frames of the left and the right channel.
    void add(const std::array<Spectrum, 2> &before, const std::array<Spectrum, 2> &now);
    /// The side with the sharper attacks is the piano's, the other one the guitar's.
    [[nodiscard]] Seating seating() const;

private:
    static constexpr int kSlots = 41;

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

    std::array<Slot, kSlots> m_slots;
    std::size_t m_firstBin;
    std::size_t m_lastBin;
};

} // namespace localservice
