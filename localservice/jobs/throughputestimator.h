// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

namespace localservice {

/// How far a running job is.
struct JobProgress
{
    double seconds = 0; ///< of its sound
    double share = 0; ///< how much of it is done, 0 to 1
    std::chrono::duration<double> elapsed{0}; ///< since it began
};

/// Estimates how long jobs take from the throughput of finished ones. Not thread-safe.
class ThroughputEstimator final
{
public:
    /// Records that a job of so many seconds of sound took so long.
    void addMeasurement(double seconds, std::chrono::duration<double> took);
    /// The seconds that a worker takes for so many seconds of sound.
    [[nodiscard]] double duration(double seconds) const { return seconds / m_rate; }
    /// The seconds that a running job still takes. One that has run for a while is measured by
    /// itself.
    [[nodiscard]] double remaining(const JobProgress &progress) const;

private:
    double m_rate = 10; // seconds of sound in a second of work, of one worker
};

} // namespace localservice
