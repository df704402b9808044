// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <string>

namespace localservice {

/// Counts what each of many parties does within the latest minute. Thread-safe.
class RateLimiter final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit RateLimiter(std::size_t perMinute)
        : m_perMinute(perMinute)
    { }

    /// Counts one deed of a party at a time; gives whether it is still within the limit.
    bool count(const std::string &party, Time now = std::chrono::steady_clock::now());

private:
    void forgetBefore(Time time);

    std::size_t m_perMinute;
    std::mutex m_mutex;
    std::map<std::string, std::deque<Time>> m_deeds;
};

} // namespace localservice
