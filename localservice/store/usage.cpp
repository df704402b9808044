// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/usage.h"

#include <Poco/Data/RecordSet.h>

using namespace Poco::Data::Keywords;

namespace localservice {

namespace {

constexpr const char *selectUsage =
    "SELECT email,"
    " (SELECT COUNT(*) FROM jobs WHERE account = users.id AND state = 'running') AS running,"
    " (SELECT COUNT(*) FROM jobs WHERE account = users.id AND state = 'queued') AS queued,"
    " (SELECT COALESCE(SUM(seconds), 0) FROM jobs WHERE account = users.id"
    "  AND state IN ('running', 'queued')) AS seconds,"
    " (SELECT COALESCE(SUM(bytes), 0) FROM uploads WHERE account = users.id) AS uploaded,"
    " (SELECT COALESCE(SUM(bytes), 0) FROM jobs WHERE account = users.id"
    "  AND state = 'ready') AS results"
    " FROM users ORDER BY id";
constexpr const char *sumKept =
    "SELECT COALESCE(SUM(bytes), 0), COUNT(*) FROM"
    " (SELECT bytes FROM uploads WHERE account = ? UNION ALL"
    "  SELECT bytes FROM jobs WHERE account = ? AND state IN ('queued', 'running', 'ready'))";

} // namespace

std::vector<AccountUsage> accountUsage(Database &database)
{
    Database::Access access = database.access();
    Poco::Data::Statement select(access.session);
    select << selectUsage;
    select.execute();
    Poco::Data::RecordSet rows(select);
    std::vector<AccountUsage> usage;
    for (bool more = rows.moveFirst(); more; more = rows.moveNext())
        usage.push_back({rows["email"].convert<std::string>(), rows["running"].convert<int>(),
                         rows["queued"].convert<int>(), rows["seconds"].convert<double>(),
                         rows["uploaded"].convert<std::int64_t>(),
                         rows["results"].convert<std::int64_t>()});
    return usage;
}

KeptFiles keptFor(Database &database, std::int64_t account)
{
    Database::Access access = database.access();
    KeptFiles kept;
    access.session << sumKept, bind(account), bind(account), into(kept.bytes), into(kept.count),
        now;
    return kept;
}

} // namespace localservice
