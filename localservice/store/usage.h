// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/database.h"

#include <string>
#include <vector>

namespace localservice {

/// What an account has in the queue and on the disk.
struct AccountUsage
{
    std::string email;
    int running = 0;
    int queued = 0;
    double seconds = 0; ///< of sound, of its running and waiting jobs
    std::int64_t uploadBytes = 0;
    std::int64_t resultBytes = 0;
};

/// An account's uploads, and the results of its jobs, also those that are still to come.
struct KeptFiles
{
    std::int64_t bytes = 0; ///< on the disk
    std::int64_t count = 0; ///< of uploads and jobs
};

/// The usage of all accounts, the oldest account first.
[[nodiscard]] std::vector<AccountUsage> accountUsage(Database &database);

/// The files that are kept for an account.
[[nodiscard]] KeptFiles keptFor(Database &database, std::int64_t account);

} // namespace localservice
