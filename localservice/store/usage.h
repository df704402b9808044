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

/// The usage of all accounts, the oldest account first.
[[nodiscard]] std::vector<AccountUsage> accountUsage(Database &database);

} // namespace localservice
