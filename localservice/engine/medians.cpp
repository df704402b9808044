// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/medians.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace localservice {

namespace {

    // Exchanges one value of a sorted window, moving only what lies between the two.
    void exchange(float *sorted, float gone, float fresh)
    {
        float *const end = sorted + kMedianSpan;
        float *place = std::find(sorted, end, gone);
        if (place == end)
            place = sorted;
        for (; place + 1 < end && place[1] < fresh; ++place)
            place[0] = place[1];
        for (; place > sorted && place[-1] > fresh; --place)
            place[0] = place[-1];
        *place = fresh;
    }

} // namespace

TimeMedians::TimeMedians(std::size_t bins)
    : m_sorted(bins * kMedianSpan)
    , m_medians(bins)
{ }

std::span<const float> TimeMedians::push(std::span<const float> oldest,
                                         std::span<const float> newest)
{
    for (std::size_t bin = 0; bin < m_medians.size(); ++bin) {
        float *const sorted = m_sorted.data() + bin * kMedianSpan;
        exchange(sorted, oldest[bin], newest[bin]);
        m_medians[bin] = sorted[kMedianSpan / 2];
    }
    return m_medians;
}

void frequencyMedians(std::span<const float> magnitudes, std::span<float> medians)
{
    const int count = static_cast<int>(magnitudes.size());
    const auto mirrored = [&](int index) {
        index = std::abs(index);
        return magnitudes[index < count ? index : 2 * (count - 1) - index];
    };
    constexpr int kReach = kMedianSpan / 2;
    std::array<float, kMedianSpan> sorted{};
    for (int i = 0; i < kMedianSpan; ++i)
        sorted[i] = mirrored(i - kReach);
    std::sort(sorted.begin(), sorted.end());
    for (int bin = 0; bin < count; ++bin) {
        medians[bin] = sorted[kReach];
        exchange(sorted.data(), mirrored(bin - kReach), mirrored(bin + kReach + 1));
    }
}

} // namespace localservice
