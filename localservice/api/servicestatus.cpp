// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/servicestatus.h"

#include "localservice/base/log.h"

#include <Poco/Exception.h>
#include <Poco/Format.h>

namespace localservice {

namespace {

constexpr std::uint64_t minFreeBytes = std::uint64_t{16} << 20;
constexpr double secondsPerMinute = 60;

std::string megabytes(std::uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}

std::uint64_t bytesOf(const AccountUsage &account)
{
    return static_cast<std::uint64_t>(account.uploadBytes + account.resultBytes);
}

} // namespace

std::string statusText(const std::vector<AccountUsage> &accounts, int workers,
                       std::uint64_t freeBytes)
{
    AccountUsage sum;
    std::string lines;
    for (const AccountUsage &account : accounts) {
        sum.running += account.running;
        sum.queued += account.queued;
        sum.seconds += account.seconds;
        sum.uploadBytes += account.uploadBytes;
        sum.resultBytes += account.resultBytes;
        lines += Poco::format("  %s: %d running, %d waiting, %s\n", printable(account.email),
                              account.running, account.queued, megabytes(bytesOf(account)));
    }
    return Poco::format("Queue: %d running (of %d at a time), %d waiting, %.0f minutes of sound\n",
                        sum.running, workers, sum.queued, sum.seconds / secondsPerMinute)
        + Poco::format("Disk: %s of uploads, %s of results, %s free\n",
                       megabytes(static_cast<std::uint64_t>(sum.uploadBytes)),
                       megabytes(static_cast<std::uint64_t>(sum.resultBytes)), megabytes(freeBytes))
        + "Accounts: " + std::to_string(accounts.size()) + "\n" + lines;
}

std::string ServiceStatus::text()
{
    return statusText(accountUsage(m_database), m_workers, m_folder.freeBytes());
}

std::string ServiceStatus::problem()
{
    try {
        using namespace Poco::Data::Keywords;
        Database::Access access = m_database.access();
        int count = 0;
        access.session << "SELECT COUNT(*) FROM settings", into(count), now;
    } catch (const Poco::Exception &) {
        return "The database cannot be read.";
    }
    return m_folder.freeBytes() < minFreeBytes ? "The disk is full." : "";
}

} // namespace localservice
