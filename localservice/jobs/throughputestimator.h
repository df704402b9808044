// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <mutex>

namespace localservice {

/// The state of a job that the remaining time is estimated from.
struct JobProgress
{
    double secondsBefore = 0; ///< sound of the jobs that wait before it
    double seconds = 0; ///< its own sound
    double share = 0; ///< how much of it is done, 0 to 1
    std::chrono::duration<double> elapsed{0}; ///< since it began; 0 while it waits
};

/// Estimates the remaining time of jobs from the throughput of finished ones. Thread-safe.
class ThroughputEstimator final
{
public:
    explicit ThroughputEstimator(int workers)
        : m_workers(workers)
    { }

    /// Records that a job of so many seconds of sound took so long.
    void addMeasurement(double seconds, std::chrono::duration<double> took);
    /// Whole seconds until the job is ready, at least 0. A job that has gone on for a while is
    /// measured by itself.
    [[nodiscard]] int secondsLeft(const JobProgress &progress) const;

private:
    mutable std::mutex m_mutex;
    double m_rate = 10; // seconds of sound in a second of work, of one worker
    int m_workers;
};

} // namespace localservice
