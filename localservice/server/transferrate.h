// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>

namespace localservice {

/// The rate of one transfer over a sliding window, from samples of its byte count.
class TransferRate final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `window` is the time over which at least `minBytes` must be moved.
    TransferRate(Time begin, std::chrono::milliseconds window, std::int64_t minBytes);

    /// Adds a sample of the bytes moved so far. Returns whether fewer than `minBytes` were moved in
    /// the window that ends now; never before the first window is over.
    [[nodiscard]] bool isTooSlow(Time now, std::int64_t bytes);

private:
    struct Sample
    {
        Time time;
        std::int64_t bytes = 0;
    };

    std::chrono::milliseconds m_window;
    std::int64_t m_minBytes;
    std::deque<Sample> m_samples; // the first one is at or before the beginning of the window
};

} // namespace localservice
