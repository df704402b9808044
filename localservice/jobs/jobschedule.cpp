// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/jobschedule.h"

#include <algorithm>
#include <functional>
#include <queue>

namespace localservice {

std::vector<QueuedJob> startOrder(std::vector<QueuedJob> queued,
                                  const std::map<std::int64_t, std::int64_t> &lastStarts)
{
    // The n-th jobs of all accounts come before any account's next one.
    std::map<std::int64_t, int> rounds;
    std::multimap<std::pair<int, std::int64_t>, QueuedJob> sorted;
    for (const QueuedJob &job : queued) {
        const auto last = lastStarts.find(job.account);
        sorted.emplace(
            std::pair(rounds[job.account]++, last == lastStarts.end() ? 0 : last->second), job);
    }
    std::transform(sorted.begin(), sorted.end(), queued.begin(),
                   [](const auto &item) { return item.second; });
    return queued;
}

double waitingTime(const std::vector<double> &running, const std::vector<double> &before,
                   int workers)
{
    std::priority_queue<double, std::vector<double>, std::greater<>> busyUntil(running.begin(),
                                                                               running.end());
    const auto nextFree = [&] {
        if (busyUntil.size() < static_cast<std::size_t>(workers))
            return 0.0;
        const double time = busyUntil.top();
        busyUntil.pop();
        return time;
    };
    for (const double seconds : before)
        busyUntil.push(nextFree() + seconds);
    return nextFree();
}

} // namespace localservice
