// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/jobstore.h"

#include <map>
#include <vector>

namespace localservice {

/// Sorts waiting jobs (the oldest first) into the order in which they are started: accounts take
/// turns, beginning with the one whose latest start is the longest ago. `lastStarts` is as of
/// JobStore::lastStarts().
[[nodiscard]] std::vector<QueuedJob>
startOrder(std::vector<QueuedJob> queued, const std::map<std::int64_t, std::int64_t> &lastStarts);

/// The seconds until a worker is free. `running` are the seconds that the running jobs still take,
/// `before` those of the waiting jobs that are started earlier, in their order.
[[nodiscard]] double waitingTime(const std::vector<double> &running,
                                 const std::vector<double> &before, int workers);

} // namespace localservice
