// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <mutex>

namespace localservice {

/// What is known about a job when somebody asks how long it takes.
struct Outlook
{
    double secondsBefore = 0; ///< sound of the jobs that wait before it
    double seconds = 0; ///< its own sound
    double share = 0; ///< how much of it is done, 0 to 1
    std::chrono::duration<double> elapsed{0}; ///< since it began; 0 while it waits
};

/// How fast the service works, learnt from the jobs that it has finished. Thread-safe.
class Pace final
{
public:
    explicit Pace(int workers)
        : m_workers(workers)
    { }

    /// A job of so many seconds of sound took so long.
    void learn(double seconds, std::chrono::duration<double> took);
    /// Whole seconds until the job is ready, at least 0. A job that has gone on for a while is
    /// measured by itself.
    [[nodiscard]] int secondsLeft(const Outlook &outlook) const;

private:
    mutable std::mutex m_mutex;
    double m_rate = 10; // seconds of sound in a second of work, of one worker
    int m_workers;
};

} // namespace localservice
