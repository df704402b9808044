// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <string>

namespace localservice {

/// Counts events by key over a sliding minute. Thread-safe.
class RateLimiter final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit RateLimiter(std::size_t perMinute)
        : m_perMinute(perMinute)
    { }

    /// Counts one event; returns whether the key is still within its limit.
    bool count(const std::string &key, Time now = std::chrono::steady_clock::now());
    /// Whether the next event would be over the limit.
    [[nodiscard]] bool isExhausted(const std::string &key,
                                   Time now = std::chrono::steady_clock::now());

private:
    void forgetBefore(Time time);

    std::size_t m_perMinute;
    std::mutex m_mutex;
    std::map<std::string, std::deque<Time>> m_events;
};

} // namespace localservice
