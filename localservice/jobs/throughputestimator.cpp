// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/throughputestimator.h"

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

// From here on a job is measured by itself; before, its start-up weighs too much.
constexpr double minMeasuredShare = 0.1;
// The weight of the latest job against all earlier ones.
constexpr double newestWeight = 0.5;
constexpr double maxSeconds = 7 * 24 * 3600;

} // namespace

void ThroughputEstimator::addMeasurement(double seconds, std::chrono::duration<double> took)
{
    if (seconds <= 0 || took.count() <= 0)
        return;
    const std::lock_guard lock(m_mutex);
    m_rate += newestWeight * (seconds / took.count() - m_rate);
}

int ThroughputEstimator::secondsLeft(const JobProgress &progress) const
{
    const std::lock_guard lock(m_mutex);
    const double before = progress.secondsBefore / m_rate / m_workers;
    double own = progress.seconds * (1 - progress.share) / m_rate;
    if (progress.share >= minMeasuredShare)
        own = progress.elapsed.count() * (1 - progress.share) / progress.share;
    return static_cast<int>(std::ceil(std::clamp(before + own, 0.0, maxSeconds)));
}

} // namespace localservice
