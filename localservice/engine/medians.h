// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <vector>

namespace localservice {

/// How many values a median looks at, in time and in frequency.
inline constexpr int medianSpan = 17;

/// The median over time of every bin: keeps sustained sound, drops transients.
class TimeMedians final
{
public:
    explicit TimeMedians(std::size_t bins);

    /// Replaces the oldest spectrum by the newest and returns the medians of the
    /// medianSpan latest ones. Before there are so many, silence stands for those that are
    /// missing.
    std::span<const float> push(std::span<const float> oldest, std::span<const float> newest);

private:
    std::vector<float> m_sorted; // medianSpan values a bin, in rising order
    std::vector<float> m_medians;
};

/// The median over the neighbouring bins of every bin: keeps transients, drops sustained sound.
/// Beyond the ends the spectrum is taken as mirrored. `medians` has the size of `magnitudes`.
void frequencyMedians(std::span<const float> magnitudes, std::span<float> medians);

} // namespace localservice
