// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/ratelimiter.h"

namespace localservice {

bool RateLimiter::count(const std::string &key, Time now)
{
    const std::lock_guard lock(m_mutex);
    forgetBefore(now - std::chrono::minutes(1));
    std::deque<Time> &events = m_events[key];
    if (events.size() >= m_perMinute)
        return false;
    events.push_back(now);
    return true;
}

bool RateLimiter::isExhausted(const std::string &key, Time now)
{
    const std::lock_guard lock(m_mutex);
    forgetBefore(now - std::chrono::minutes(1));
    const auto found = m_events.find(key);
    return found != m_events.end() && found->second.size() >= m_perMinute;
}

void RateLimiter::forgetBefore(Time time)
{
    for (auto entry = m_events.begin(); entry != m_events.end();) {
        std::deque<Time> &events = entry->second;
        while (!events.empty() && events.front() <= time)
            events.pop_front();
        entry = events.empty() ? m_events.erase(entry) : std::next(entry);
    }
}

} // namespace localservice
