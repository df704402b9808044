// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/database.h"

#include "localservice/base/log.h"
#include "localservice/base/paths.h"

#include <Poco/Data/SQLite/Connector.h>
#include <Poco/Data/SQLite/SQLiteException.h>
#include <Poco/DateTimeFormatter.h>
#include <Poco/Timestamp.h>

#include <algorithm>
#include <array>
#include <chrono>

using namespace Poco::Data::Keywords;
namespace fs = std::filesystem;

namespace localservice {

namespace {

constexpr const char *usingReserve = "The disk is full: using the reserve";
constexpr std::array setUpStatements = {
    "PRAGMA journal_mode = WAL",
    "PRAGMA synchronous = NORMAL",
    "PRAGMA foreign_keys = ON",
    "PRAGMA temp_store = MEMORY",
    "CREATE TABLE IF NOT EXISTS settings(name TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS users(id INTEGER PRIMARY KEY, name TEXT NOT NULL,"
    " email TEXT NOT NULL UNIQUE COLLATE NOCASE, password TEXT NOT NULL, added INTEGER NOT "
    "NULL,"
    " code TEXT NOT NULL DEFAULT '', code_until INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE IF NOT EXISTS sessions(digest TEXT PRIMARY KEY,"
    " account INTEGER NOT NULL REFERENCES users(id), expires INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS processed(account INTEGER NOT NULL REFERENCES users(id),"
    " day TEXT NOT NULL, files INTEGER NOT NULL, PRIMARY KEY(account, day))",
    "CREATE TABLE IF NOT EXISTS uploads(id INTEGER PRIMARY KEY,"
    " account INTEGER NOT NULL REFERENCES users(id), name TEXT NOT NULL, file TEXT NOT NULL,"
    " seconds REAL NOT NULL, added INTEGER NOT NULL, removed INTEGER NOT NULL DEFAULT 0)",
    "CREATE INDEX IF NOT EXISTS uploads_by_name ON uploads(name)",
    "CREATE INDEX IF NOT EXISTS uploads_by_account ON uploads(account)",
    "CREATE TABLE IF NOT EXISTS jobs(id INTEGER PRIMARY KEY,"
    " account INTEGER NOT NULL REFERENCES users(id), upload INTEGER NOT NULL,"
    " instrument TEXT NOT NULL, extension TEXT NOT NULL, demo INTEGER NOT NULL, name TEXT NOT "
    "NULL,"
    " original TEXT NOT NULL, seconds REAL NOT NULL, state TEXT NOT NULL, reason TEXT NOT NULL,"
    " token TEXT NOT NULL UNIQUE, added INTEGER NOT NULL, turn INTEGER NOT NULL)",
    "CREATE INDEX IF NOT EXISTS jobs_by_state ON jobs(state, turn)",
    "CREATE INDEX IF NOT EXISTS jobs_by_account ON jobs(account, added)",
};

// Columns that earlier versions did not have.
struct Addition
{
    const char *table;
    const char *column;
    const char *statement;
};
constexpr std::array additions = {
    Addition{"jobs", "attempts", "ALTER TABLE jobs ADD COLUMN attempts INTEGER NOT NULL DEFAULT 0"},
    Addition{"jobs", "interruptions",
             "ALTER TABLE jobs ADD COLUMN interruptions INTEGER NOT NULL DEFAULT 0"},
    Addition{"jobs", "started", "ALTER TABLE jobs ADD COLUMN started INTEGER NOT NULL DEFAULT 0"},
    Addition{"jobs", "bytes", "ALTER TABLE jobs ADD COLUMN bytes INTEGER NOT NULL DEFAULT 0"},
    Addition{"uploads", "bytes", "ALTER TABLE uploads ADD COLUMN bytes INTEGER NOT NULL DEFAULT 0"},
};

// Sessions of earlier versions did not expire: they get 30 days from their beginning.
constexpr std::array sessionExpiryStatements = {
    "ALTER TABLE sessions RENAME COLUMN added TO expires",
    "UPDATE sessions SET expires = expires + 2592000",
};

bool hasColumn(Poco::Data::Session &session, const std::string &table, const std::string &column)
{
    int count = 0;
    session << "SELECT COUNT(*) FROM pragma_table_info(?) WHERE name = ?", bind(table),
        bind(column), into(count), now;
    return count > 0;
}

void migrate(Poco::Data::Session &session)
{
    Transaction transaction(session);
    if (hasColumn(session, "sessions", "added")) {
        for (const char *statement : sessionExpiryStatements)
            session << statement, now;
    }
    for (const auto &[table, column, statement] : additions) {
        if (!hasColumn(session, table, column))
            session << statement, now;
    }
    transaction.commit();
}

class DatabaseDamaged final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

void checkWhole(Poco::Data::Session &session)
{
    std::string result;
    session << "PRAGMA quick_check(1)", into(result), now;
    if (result != "ok")
        throw DatabaseDamaged(result);
}

void setUp(Poco::Data::Session &session)
{
    for (const char *statement : setUpStatements)
        session << statement, now;
    checkWhole(session);
    migrate(session);
}

// All columns, each with its table.
std::vector<std::string> columnsOf(Poco::Data::Session &session)
{
    std::vector<std::string> columns;
    session << "SELECT tables.name || '.' || columns.name AS path FROM sqlite_master AS tables,"
               " pragma_table_info(tables.name) AS columns WHERE tables.type = 'table'"
               " ORDER BY path",
        into(columns), now;
    return columns;
}

void checkColumns(Poco::Data::Session &session)
{
    Poco::Data::Session complete("SQLite", ":memory:");
    setUp(complete);
    const std::vector<std::string> found = columnsOf(session);
    const std::vector<std::string> needed = columnsOf(complete);
    if (!std::includes(found.begin(), found.end(), needed.begin(), needed.end()))
        throw DatabaseDamaged("columns are missing");
}

// What SQLite takes for whole, but no store can have written.
void checkValues(Poco::Data::Session &session)
{
    int orphans = 0;
    session << "SELECT COUNT(*) FROM pragma_foreign_key_check", into(orphans), now;
    if (orphans > 0)
        throw DatabaseDamaged("rows of accounts that do not exist");
    int withoutAccount = 0;
    session << "SELECT COUNT(*) FROM settings WHERE name = 'local_hash' AND NOT EXISTS"
               " (SELECT 1 FROM settings AS owner JOIN users"
               "  ON CAST(users.id AS TEXT) = owner.value WHERE owner.name = 'local_account')",
        into(withoutAccount), now;
    if (withoutAccount > 0)
        throw DatabaseDamaged("this computer's own account is missing");
}

// Without accounts nothing explains the files: the database was lost, cut off or another program's.
void checkOrigin(Poco::Data::Session &session, const std::vector<fs::path> &folders)
{
    const bool hasFiles = std::any_of(folders.begin(), folders.end(),
                                      [](const fs::path &folder) { return !fs::is_empty(folder); });
    if (hasFiles && !hasColumn(session, "users", "id"))
        throw DatabaseDamaged("there are files, but no accounts");
}

Poco::Data::Session open(const fs::path &file, const std::vector<fs::path> &folders)
{
    using namespace Poco::Data::SQLite;
    Connector::registerConnector();
    try {
        Poco::Data::Session session("SQLite", utf8(file), 1);
        // Keeps a second service from working on the same jobs. Without it the first look at the
        // database takes room on the disk.
        session << "PRAGMA locking_mode = EXCLUSIVE", now;
        checkOrigin(session, folders);
        setUp(session);
        checkColumns(session);
        checkValues(session);
        return session;
    } catch (const DBLockedException &) {
        throw DatabaseBusy("Another service already uses " + utf8(file));
    } catch (const TableLockedException &) {
        throw DatabaseBusy("Another service already uses " + utf8(file));
    } catch (const CorruptImageException &error) {
        throw DatabaseDamaged(error.displayText());
    } catch (const InvalidSQLStatementException &error) {
        // A table has other columns.
        throw DatabaseDamaged(error.displayText());
    } catch (const SQLiteException &error) {
        // The library has no class for this one.
        if (error.displayText().find("not a database") == std::string::npos)
            throw;
        throw DatabaseDamaged(error.displayText());
    }
}

// The files and folders beside the database are renamed with it, and before it: whoever is
// interrupted does it again.
fs::path setAside(const fs::path &file, const std::vector<fs::path> &folders)
{
    const std::string date =
        Poco::DateTimeFormatter::format(Poco::Timestamp(), ".damaged-%Y-%m-%dT%H-%M-%S");
    for (const fs::path &folder : folders) {
        if (fs::is_empty(folder))
            continue;
        const fs::path aside = fs::path(folder) += date;
        fs::rename(folder, aside);
        fs::create_directory(folder, aside);
    }
    for (const char *suffix : {"-wal", "-shm"}) {
        std::error_code missing;
        fs::rename(fs::path(file) += suffix, (fs::path(file) += date) += suffix, missing);
    }
    fs::rename(file, fs::path(file) += date);
    return fs::path(file) += date;
}

Poco::Data::Session openOnFullDisk(const fs::path &file, const std::vector<fs::path> &folders,
                                   DiskReserve &reserve)
{
    try {
        return open(file, folders);
    } catch (const Poco::Data::SQLite::DatabaseFullException &) {
        log(usingReserve);
        reserve.release();
        return open(file, folders);
    }
}

Poco::Data::Session openOrReplace(const fs::path &file, const std::vector<fs::path> &folders,
                                  DiskReserve &reserve, fs::path &damagedFile)
{
    try {
        return openOnFullDisk(file, folders, reserve);
    } catch (const DatabaseDamaged &error) {
        damagedFile = setAside(file, folders);
        log("The database was damaged (" + std::string(error.what()) + "). It is now "
            + utf8(damagedFile) + ", its files are beside it, and a new one begins.");
        return openOnFullDisk(file, folders, reserve);
    }
}

} // namespace

Database::Database(const fs::path &file, const std::vector<fs::path> &folders)
    : m_reserve(fs::path(file).replace_filename("reserve"))
    , m_session(openOrReplace(file, folders, m_reserve, m_damagedFile))
{ }

void Database::reuseLog()
{
    const std::lock_guard lock(m_mutex);
    try {
        // The next change overwrites the log from its beginning. The file keeps its size, so that
        // nobody else takes the room.
        m_session << "PRAGMA wal_checkpoint(RESTART)", now;
    } catch (const Poco::Data::SQLite::SQLiteException &error) {
        log("Could not reuse the database's log: " + error.displayText());
    }
}

void Database::releaseReserve()
{
    const std::lock_guard lock(m_mutex);
    log(usingReserve);
    m_reserve.release();
    reuseLog();
}

void Database::refillReserve()
{
    const std::lock_guard lock(m_mutex);
    m_reserve.refill();
}

Transaction::Transaction(Poco::Data::Session &session)
    : m_session(session)
{
    m_session << "SAVEPOINT change", now;
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    try {
        m_session << "ROLLBACK TO change", now;
        m_session << "RELEASE change", now;
    } catch (const Poco::Exception &error) {
        log("Could not take back a change: " + error.displayText());
    }
}

void Transaction::commit()
{
    m_session << "RELEASE change", now;
    m_open = false;
}

std::int64_t secondsNow()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace localservice
