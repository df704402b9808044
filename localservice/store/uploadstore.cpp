// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/uploadstore.h"

#include <Poco/Data/RecordSet.h>

using namespace Poco::Data::Keywords;

namespace localservice {

namespace {

constexpr const char *selectUploads =
    "SELECT id, account, name, file, seconds, bytes FROM uploads ";
constexpr const char *unneededUploads =
    "removed = 1 AND NOT EXISTS (SELECT 1 FROM jobs"
    " WHERE jobs.upload = uploads.id"
    " AND (jobs.state IN ('queued', 'running')"
    " OR (jobs.demo = 1 AND jobs.state = 'ready' AND jobs.added >= ?)))";

std::optional<Upload> firstOf(Poco::Data::Statement &select)
{
    select.execute();
    Poco::Data::RecordSet rows(select);
    if (!rows.moveFirst())
        return std::nullopt;
    return Upload{rows["id"].convert<std::int64_t>(),  rows["account"].convert<std::int64_t>(),
                  rows["name"].convert<std::string>(), rows["file"].convert<std::string>(),
                  rows["seconds"].convert<double>(),   rows["bytes"].convert<std::int64_t>()};
}

} // namespace

std::int64_t UploadStore::add(const Upload &upload)
{
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    markRemoved(upload.account, upload.name);
    std::int64_t id = 0;
    access.session << "INSERT INTO uploads(account, name, file, seconds, bytes, added)"
                      " VALUES(?, ?, ?, ?, ?, ?)",
        bind(upload.account), bind(upload.name), bind(upload.file), bind(upload.seconds),
        bind(upload.bytes), bind(secondsNow()), now;
    access.session << "SELECT last_insert_rowid()", into(id), now;
    transaction.commit();
    return id;
}

std::optional<Upload> UploadStore::find(std::int64_t account, const std::string &name)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select << selectUploads << "WHERE account = ? AND name = ? AND removed = 0", bind(account),
        bind(name);
    return firstOf(select);
}

std::optional<Upload> UploadStore::find(std::int64_t id)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select << selectUploads << "WHERE id = ?", bind(id);
    return firstOf(select);
}

void UploadStore::markRemoved(std::int64_t account, const std::string &name)
{
    Database::Access access = m_database.access();
    access.session << "UPDATE uploads SET removed = 1 WHERE name = ? AND account = ?", bind(name),
        bind(account), now;
}

void UploadStore::remove(std::int64_t account, const std::string &name)
{
    m_database.changeOnFullDisk([&] { markRemoved(account, name); });
}

void UploadStore::removeOlderThan(std::int64_t time)
{
    m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        access.session << "UPDATE uploads SET removed = 1 WHERE added < ?", bind(time), now;
    });
}

std::vector<std::string> UploadStore::takeUnneeded(std::int64_t demosBefore)
{
    return m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        Transaction transaction(access.session);
        std::vector<std::string> files;
        access.session << "SELECT file FROM uploads WHERE " << unneededUploads, bind(demosBefore),
            into(files), now;
        if (!files.empty())
            access.session << "DELETE FROM uploads WHERE " << unneededUploads, bind(demosBefore),
                now;
        transaction.commit();
        return files;
    });
}

std::vector<std::string> UploadStore::files()
{
    Database::Access access = m_database.access();
    std::vector<std::string> names;
    access.session << "SELECT file FROM uploads", into(names), now;
    return names;
}

} // namespace localservice
