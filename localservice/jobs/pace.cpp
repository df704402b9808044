// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/pace.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

    // A job tells its own pace from here on; before, the start-up weighs too much.
    constexpr double kTellingShare = 0.1;
    // How much the latest job counts against all earlier ones.
    constexpr double kNewWeight = 0.5;
    constexpr double kLongest = 7 * 24 * 3600;

} // namespace

void Pace::learn(double seconds, std::chrono::duration<double> took)
{
    if (seconds <= 0 || took.count() <= 0)
        return;
    const std::lock_guard lock(m_mutex);
    m_rate += kNewWeight * (seconds / took.count() - m_rate);
}

int Pace::secondsLeft(const Outlook &outlook) const
{
    const std::lock_guard lock(m_mutex);
    const double before = outlook.secondsBefore / m_rate / m_workers;
    double own = outlook.seconds * (1 - outlook.share) / m_rate;
    if (outlook.share >= kTellingShare)
        own = outlook.elapsed.count() * (1 - outlook.share) / outlook.share;
    return static_cast<int>(std::ceil(std::clamp(before + own, 0.0, kLongest)));
}

} // namespace localservice
