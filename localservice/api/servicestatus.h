// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/jobs/datafolder.h"
#include "localservice/store/usage.h"

#include <string>

namespace localservice {

/// The state of a service, for its administrator. Thread-safe.
class ServiceStatus final
{
public:
    ServiceStatus(Database &database, const DataFolder &folder, int workers)
        : m_database(database)
        , m_folder(folder)
        , m_workers(workers)
    { }

    /// Queue, accounts and disk, as lines of text.
    [[nodiscard]] std::string text();
    /// A sentence about what keeps the service from working; "" when nothing does.
    [[nodiscard]] std::string problem();

private:
    Database &m_database;
    const DataFolder &m_folder;
    int m_workers;
};

/// The lines of ServiceStatus::text().
[[nodiscard]] std::string statusText(const std::vector<AccountUsage> &accounts, int workers,
                                     std::uint64_t freeBytes);

} // namespace localservice
