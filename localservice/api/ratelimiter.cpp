// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/ratelimiter.h"

namespace localservice {

bool RateLimiter::count(const std::string &party, Time now)
{
    const std::lock_guard lock(m_mutex);
    forgetBefore(now - std::chrono::minutes(1));
    std::deque<Time> &deeds = m_deeds[party];
    if (deeds.size() >= m_perMinute)
        return false;
    deeds.push_back(now);
    return true;
}

void RateLimiter::forgetBefore(Time time)
{
    for (auto entry = m_deeds.begin(); entry != m_deeds.end();) {
        std::deque<Time> &deeds = entry->second;
        while (!deeds.empty() && deeds.front() <= time)
            deeds.pop_front();
        entry = deeds.empty() ? m_deeds.erase(entry) : std::next(entry);
    }
}

} // namespace localservice
