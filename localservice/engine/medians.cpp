// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/engine/medians.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace localservice {

namespace {

// Replaces one value of a sorted window, moving only what lies between the two.
void replaceSorted(float *sorted, float oldValue, float newValue)
{
    float *const end = sorted + medianSpan;
    float *place = std::find(sorted, end, oldValue);
    if (place == end)
        place = sorted;
    for (; place + 1 < end && place[1] < newValue; ++place)
        place[0] = place[1];
    for (; place > sorted && place[-1] > newValue; --place)
        place[0] = place[-1];
    *place = newValue;
}

} // namespace

TimeMedians::TimeMedians(std::size_t bins)
    : m_sorted(bins * medianSpan)
    , m_medians(bins)
{ }

std::span<const float> TimeMedians::push(std::span<const float> oldest,
                                         std::span<const float> newest)
{
    for (std::size_t bin = 0; bin < m_medians.size(); ++bin) {
        float *const sorted = m_sorted.data() + bin * medianSpan;
        replaceSorted(sorted, oldest[bin], newest[bin]);
        m_medians[bin] = sorted[medianSpan / 2];
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
    constexpr int reach = medianSpan / 2;
    std::array<float, medianSpan> sorted{};
    for (int i = 0; i < medianSpan; ++i)
        sorted[i] = mirrored(i - reach);
    std::sort(sorted.begin(), sorted.end());
    for (int bin = 0; bin < count; ++bin) {
        medians[bin] = sorted[reach];
        replaceSorted(sorted.data(), mirrored(bin - reach), mirrored(bin + reach + 1));
    }
}

} // namespace localservice
