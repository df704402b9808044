// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/throughputestimator.h"

#include <algorithm>

namespace localservice {

namespace {

// From here on a job is measured by itself; before, its start-up weighs too much.
constexpr double minMeasuredShare = 0.1;
// The weight of the latest job against all earlier ones.
constexpr double newestWeight = 0.5;

} // namespace

void ThroughputEstimator::addMeasurement(double seconds, std::chrono::duration<double> took)
{
    if (seconds > 0 && took.count() > 0)
        m_rate += newestWeight * (seconds / took.count() - m_rate);
}

double ThroughputEstimator::remaining(const JobProgress &progress) const
{
    if (progress.share >= minMeasuredShare)
        return progress.elapsed.count() * (1 - progress.share) / progress.share;
    // Not every separator reports its progress.
    return std::max(0.0, duration(progress.seconds) - progress.elapsed.count());
}

} // namespace localservice
