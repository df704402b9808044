// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/stereofield.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

// Below is the bass, above are mostly cymbals and noise: neither shows where a guitar is panned.
constexpr float minHertz = 120;
constexpr float maxHertz = 6000;
// Slots nearer to the centre than this count as the centre.
constexpr int centreReach = 5;
// A side with less than this share of the energy has no instrument.
constexpr double minSideShare = 0.03;
// A single panned instrument whose amplitude rises by this share a frame is a piano.
constexpr double struckSharpness = 0.1;

std::size_t binAt(float hertz, float hertzPerBin)
{
    return std::clamp<std::size_t>(static_cast<std::size_t>(hertz / hertzPerBin), 1,
                                   Stft::binCount);
}

} // namespace

StereoPosition positionOf(std::complex<float> left, std::complex<float> right)
{
    const float l = std::norm(left);
    const float r = std::norm(right);
    if (l + r <= 0)
        return {};
    return {(r - l) / (l + r), 2 * std::abs(left * std::conj(right)) / (l + r)};
}

StereoField::StereoField(float hertzPerBin)
    : m_slots{}
    , m_firstBin(binAt(minHertz, hertzPerBin))
    , m_lastBin(binAt(maxHertz, hertzPerBin))
{ }

void StereoField::add(const std::array<Spectrum, 2> &before, const std::array<Spectrum, 2> &now)
{
    for (std::size_t bin = m_firstBin; bin < m_lastBin; ++bin) {
        const StereoPosition place = positionOf(now[0][bin], now[1][bin]);
        const int index = static_cast<int>(std::lround((place.pan + 1) / 2 * (slotCount - 1)));
        Slot &slot = m_slots[std::clamp(index, 0, slotCount - 1)];
        const double energy = std::norm(now[0][bin]) + std::norm(now[1][bin]);
        const double earlier = std::norm(before[0][bin]) + std::norm(before[1][bin]);
        slot.energy += energy;
        slot.amplitude += std::sqrt(energy);
        slot.attack += std::max(0.0, std::sqrt(energy) - std::sqrt(earlier));
    }
}

StereoField::Side StereoField::side(int first, int last) const
{
    Side side;
    double amplitude = 0;
    double attack = 0;
    double peak = 0;
    for (int i = first; i <= last; ++i) {
        side.energy += m_slots[i].energy;
        amplitude += m_slots[i].amplitude;
        attack += m_slots[i].attack;
        if (m_slots[i].energy > peak) {
            peak = m_slots[i].energy;
            side.pan = 2.0F * static_cast<float>(i) / (slotCount - 1) - 1;
        }
    }
    side.sharpness = amplitude > 0 ? attack / amplitude : 0;
    return side;
}

PanPositions StereoField::positions() const
{
    constexpr int centre = slotCount / 2;
    const Side left = side(0, centre - centreReach - 1);
    const Side right = side(centre + centreReach + 1, slotCount - 1);
    double all = 0;
    for (const Slot &slot : m_slots)
        all += slot.energy;
    const bool onLeft = left.energy > all * minSideShare;
    const bool onRight = right.energy > all * minSideShare;
    if (onLeft && onRight) {
        const bool pianoLeft = left.sharpness > right.sharpness;
        return {pianoLeft ? right.pan : left.pan, pianoLeft ? left.pan : right.pan};
    }
    if (!onLeft && !onRight)
        return {};
    const Side &only = onLeft ? left : right;
    return only.sharpness > struckSharpness ? PanPositions{{}, only.pan}
                                            : PanPositions{only.pan, {}};
}

} // namespace localservice
