// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/database.h"

#include "localservice/base/log.h"
#include "localservice/base/paths.h"

#include <Poco/Data/SQLite/Connector.h>
#include <Poco/Data/SQLite/SQLiteException.h>

#include <array>
#include <chrono>

using namespace Poco::Data::Keywords;

namespace localservice {

namespace {

// "exclusive" keeps a second service from working on the same jobs.
constexpr std::array setUpStatements = {
    "PRAGMA locking_mode = EXCLUSIVE",
    "PRAGMA journal_mode = WAL",
    "PRAGMA synchronous = NORMAL",
    "PRAGMA foreign_keys = ON",
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
    "CREATE TABLE IF NOT EXISTS jobs(id INTEGER PRIMARY KEY,"
    " account INTEGER NOT NULL REFERENCES users(id), upload INTEGER NOT NULL,"
    " instrument TEXT NOT NULL, extension TEXT NOT NULL, demo INTEGER NOT NULL, name TEXT NOT "
    "NULL,"
    " original TEXT NOT NULL, seconds REAL NOT NULL, state TEXT NOT NULL, reason TEXT NOT NULL,"
    " token TEXT NOT NULL UNIQUE, added INTEGER NOT NULL, turn INTEGER NOT NULL)",
    "CREATE INDEX IF NOT EXISTS jobs_by_state ON jobs(state, turn)",
    "CREATE INDEX IF NOT EXISTS jobs_by_account ON jobs(account, added)",
};

// Sessions of earlier versions did not end by themselves: they get 30 days from their
// beginning.
constexpr std::array sessionExpiryStatements = {
    "ALTER TABLE sessions RENAME COLUMN added TO expires",
    "UPDATE sessions SET expires = expires + 2592000",
};

void bringUpToDate(Poco::Data::Session &session)
{
    int isOld = 0;
    session << "SELECT COUNT(*) FROM pragma_table_info('sessions') WHERE name = 'added'",
        into(isOld), now;
    if (isOld == 0)
        return;
    Transaction transaction(session);
    for (const char *statement : sessionExpiryStatements)
        session << statement, now;
    transaction.commit();
}

Poco::Data::Session open(const std::filesystem::path &file)
{
    Poco::Data::SQLite::Connector::registerConnector();
    Poco::Data::Session session("SQLite", utf8(file), 1);
    return session;
}

} // namespace

Database::Database(const std::filesystem::path &file)
    : m_session(open(file))
{
    try {
        for (const char *statement : setUpStatements)
            m_session << statement, now;
        bringUpToDate(m_session);
    } catch (const Poco::Data::SQLite::DBLockedException &) {
        throw DatabaseBusy("Another service already uses " + utf8(file));
    } catch (const Poco::Data::SQLite::TableLockedException &) {
        throw DatabaseBusy("Another service already uses " + utf8(file));
    }
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
