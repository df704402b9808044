// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/diskreserve.h"

#include <Poco/Data/SQLite/SQLiteException.h>
#include <Poco/Data/Session.h>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <vector>

namespace localservice {

/// The one connection to the service's SQLite file, and its tables. Thread-safe.
class Database final
{
public:
    /// Another service cannot open the file while this one does: throws DatabaseBusy. A damaged
    /// file is renamed, and an empty database takes its place. So are the `folders`, whose files
    /// nothing but its rows explains; an empty or foreign file beside such files counts as damaged.
    explicit Database(const std::filesystem::path &file,
                      const std::vector<std::filesystem::path> &folders = {});

    /// The new name of the damaged file; "" when there was none.
    [[nodiscard]] const std::filesystem::path &damagedFile() const { return m_damagedFile; }

    /// The connection, for one thread as long as the object lives.
    class Access
    {
    public:
        explicit Access(Database &database)
            : session(database.m_session)
            , m_lock(database.m_mutex)
        { }
        Poco::Data::Session &session;

    private:
        std::lock_guard<std::recursive_mutex> m_lock;
    };

    [[nodiscard]] Access access() { return Access(*this); }

    /// Makes a change that must also work on a full disk: in the room that earlier changes took in
    /// the write-ahead log, or else in that of the reserve. Call it outside of transactions.
    template <typename Change> auto changeOnFullDisk(Change change)
    {
        for (const auto makeRoom : {&Database::reuseLog, &Database::releaseReserve}) {
            try {
                return change();
            } catch (const Poco::Data::SQLite::DatabaseFullException &) {
                (this->*makeRoom)();
            }
        }
        return change();
    }
    /// To be called when there may be room again.
    void refillReserve();

private:
    void reuseLog();
    void releaseReserve();

    std::filesystem::path m_damagedFile;
    DiskReserve m_reserve;
    std::recursive_mutex m_mutex;
    Poco::Data::Session m_session;
};

/// Another service already uses this file.
class DatabaseBusy final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// All changes made while it lives are committed together by commit(), or rolled back. A nested one
/// is committed with the outer one.
class Transaction final
{
public:
    explicit Transaction(Poco::Data::Session &session);
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction();

    void commit();

private:
    Poco::Data::Session &m_session;
    bool m_open = true;
};

/// Seconds since 1970 by the system's clock.
[[nodiscard]] std::int64_t secondsNow();

} // namespace localservice
