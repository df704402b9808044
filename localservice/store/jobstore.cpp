// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/jobstore.h"

#include "localservice/base/secrets.h"

#include <Poco/Data/RecordSet.h>

#include <array>

using namespace Poco::Data::Keywords;

namespace localservice {

namespace {

constexpr std::array stateWords = {"queued", "running", "ready", "failed", "cancelled"};
constexpr const char *selectJobs =
    "SELECT jobs.id AS id, jobs.account AS account, upload, instrument, extension, demo,"
    " jobs.name AS name, original, jobs.seconds AS seconds, state, reason, token,"
    " jobs.added AS added, jobs.bytes AS bytes, attempts FROM jobs ";
constexpr const char *oldJobs = "state NOT IN ('queued', 'running') AND added < ?";
constexpr const char *deleteUnsuccessful =
    "DELETE FROM jobs WHERE id IN (SELECT id FROM jobs WHERE account = ?"
    " AND state IN ('failed', 'cancelled') ORDER BY turn DESC LIMIT -1 OFFSET ?)";

std::string wordOf(JobState state)
{
    return stateWords[static_cast<std::size_t>(state)];
}

JobState stateOf(const std::string &word)
{
    for (std::size_t i = 0; i < stateWords.size(); ++i) {
        if (word == stateWords[i])
            return static_cast<JobState>(i);
    }
    return JobState::Failed;
}

Job jobOf(Poco::Data::RecordSet &row)
{
    const auto text = [&row](const char *column) { return row[column].convert<std::string>(); };
    Job job;
    job.id = row["id"].convert<std::int32_t>();
    job.account = row["account"].convert<std::int64_t>();
    job.upload = row["upload"].convert<std::int64_t>();
    job.instrument = text("instrument");
    job.extension = text("extension");
    job.demo = row["demo"].convert<int>() != 0;
    job.name = text("name");
    job.original = text("original");
    job.seconds = row["seconds"].convert<double>();
    job.state = stateOf(text("state"));
    job.reason = text("reason");
    job.token = text("token");
    job.added = row["added"].convert<std::int64_t>();
    job.bytes = row["bytes"].convert<std::int64_t>();
    job.attempts = row["attempts"].convert<int>();
    return job;
}

std::vector<Job> jobsOf(Poco::Data::Statement &select)
{
    select.execute();
    Poco::Data::RecordSet rows(select);
    std::vector<Job> jobs;
    for (bool more = rows.moveFirst(); more; more = rows.moveNext())
        jobs.push_back(jobOf(rows));
    return jobs;
}

std::optional<Job> firstOf(std::vector<Job> jobs)
{
    return jobs.empty() ? std::nullopt : std::optional(std::move(jobs.front()));
}

std::int32_t freeId(Poco::Data::Session &session)
{
    for (;;) {
        const std::int32_t id = randomId();
        int taken = 0;
        session << "SELECT COUNT(*) FROM jobs WHERE id = ?", bind(id), into(taken), now;
        if (taken == 0)
            return id;
    }
}

} // namespace

std::int32_t JobStore::add(const Job &job)
{
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    const std::int32_t id = freeId(access.session);
    access.session << deleteUnsuccessful, bind(job.account), bind(maxUnsuccessful), now;
    access.session
        << "INSERT INTO jobs(id, account, upload, instrument, extension, demo, name, original,"
           " seconds, state, reason, token, added, bytes, turn) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?,"
           " 'queued', '', ?, ?, ?, (SELECT COALESCE(MAX(turn), 0) + 1 FROM jobs))",
        bind(id), bind(job.account), bind(job.upload), bind(job.instrument), bind(job.extension),
        bind(job.demo ? 1 : 0), bind(job.name), bind(job.original), bind(job.seconds),
        bind(randomHex(32)), bind(secondsNow()), bind(job.bytes), now;
    transaction.commit();
    return id;
}

std::vector<Job> JobStore::select(const std::string &condition, std::int64_t value)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select << selectJobs << condition, bind(value);
    return jobsOf(select);
}

std::optional<Job> JobStore::find(std::int32_t id)
{
    return firstOf(select("WHERE jobs.id = ?", id));
}

std::optional<Job> JobStore::findByToken(const std::string &token)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select << selectJobs << "WHERE token = ?", bind(token);
    return firstOf(jobsOf(select));
}

std::optional<Job> JobStore::findDuplicate(const Job &job, const std::string &uploadName)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement select(access.session);
    select
        << selectJobs
        << "JOIN uploads ON uploads.id = jobs.upload WHERE jobs.account = ? AND uploads.name = ?"
           " AND instrument = ? AND extension = ? AND demo = ? AND state IN ('queued', 'running')",
        bind(job.account), bind(uploadName), bind(job.instrument), bind(job.extension),
        bind(job.demo ? 1 : 0);
    return firstOf(jobsOf(select));
}

std::vector<QueuedJob> JobStore::queued()
{
    Database::Access access = m_database.access();
    std::vector<std::int32_t> ids;
    std::vector<std::int64_t> accounts;
    std::vector<double> seconds;
    access.session << "SELECT id, account, seconds FROM jobs WHERE state = 'queued' ORDER BY turn",
        into(ids), into(accounts), into(seconds), now;
    std::vector<QueuedJob> jobs;
    for (std::size_t i = 0; i < ids.size(); ++i)
        jobs.push_back({ids[i], accounts[i], seconds[i]});
    return jobs;
}

std::map<std::int64_t, std::int64_t> JobStore::lastStarts()
{
    Database::Access access = m_database.access();
    std::vector<std::int64_t> accounts;
    std::vector<std::int64_t> starts;
    access.session << "SELECT account, MAX(started) FROM jobs WHERE started > 0 GROUP BY account",
        into(accounts), into(starts), now;
    std::map<std::int64_t, std::int64_t> result;
    for (std::size_t i = 0; i < accounts.size(); ++i)
        result[accounts[i]] = starts[i];
    return result;
}

std::optional<Job> JobStore::start(std::int32_t id)
{
    return m_database.changeOnFullDisk([&]() -> std::optional<Job> {
        Database::Access access = m_database.access();
        Transaction transaction(access.session);
        if (!moveNow(id, JobState::Queued, JobState::Running, {}))
            return std::nullopt;
        access.session << "UPDATE jobs SET attempts = attempts + 1,"
                          " started = (SELECT MAX(started) + 1 FROM jobs) WHERE id = ?",
            bind(id), now;
        transaction.commit();
        return find(id);
    });
}

void JobStore::putBack(std::int32_t id)
{
    m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        access.session << "UPDATE jobs SET state = 'queued', attempts = attempts - 1"
                          " WHERE id = ? AND state = 'running'",
            bind(id), now;
    });
}

bool JobStore::move(std::int32_t id, JobState from, JobState to, const std::string &reason)
{
    return m_database.changeOnFullDisk([&] { return moveNow(id, from, to, reason); });
}

bool JobStore::moveNow(std::int32_t id, JobState from, JobState to, const std::string &reason)
{
    Database::Access access = m_database.access();
    Poco::Data::Statement update(access.session);
    update << "UPDATE jobs SET state = ?, reason = ? WHERE id = ? AND state = ?", bind(wordOf(to)),
        bind(reason), bind(id), bind(wordOf(from));
    update.execute();
    int changed = 0;
    access.session << "SELECT changes()", into(changed), now;
    return changed == 1;
}

void JobStore::requeueInterrupted(const std::string &reason)
{
    m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        access.session << "UPDATE jobs SET interruptions = interruptions + 1,"
                          " attempts = attempts - 1 WHERE state = 'running'",
            now;
        access.session << "UPDATE jobs SET state = 'failed', reason = ?"
                          " WHERE state = 'running' AND interruptions >= ?",
            bind(reason), bind(maxAttempts), now;
        access.session << "UPDATE jobs SET state = 'queued' WHERE state = 'running'", now;
    });
}

void JobStore::failUnfinished(const std::string &reason)
{
    m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        access.session << "UPDATE jobs SET state = 'failed', reason = ?"
                          " WHERE state IN ('queued', 'running')",
            bind(reason), now;
    });
}

int JobStore::countWaiting(std::int64_t account)
{
    Database::Access access = m_database.access();
    int count = 0;
    access.session << "SELECT COUNT(*) FROM jobs WHERE account = ? AND state = 'queued'",
        bind(account), into(count), now;
    return count;
}

std::vector<std::string> JobStore::tokens()
{
    Database::Access access = m_database.access();
    std::vector<std::string> tokens;
    access.session << "SELECT token FROM jobs", into(tokens), now;
    return tokens;
}

std::vector<Job> JobStore::finishedOf(std::int64_t account, int maxCount)
{
    return select("WHERE state = 'ready' AND jobs.account = ? ORDER BY turn DESC LIMIT "
                      + std::to_string(maxCount),
                  account);
}

std::vector<std::string> JobStore::tokensOlderThan(std::int64_t time)
{
    Database::Access access = m_database.access();
    std::vector<std::string> tokens;
    access.session << "SELECT token FROM jobs WHERE " << oldJobs, bind(time), into(tokens), now;
    return tokens;
}

std::vector<std::string> JobStore::takeOlderThan(std::int64_t time)
{
    return m_database.changeOnFullDisk([&] {
        Database::Access access = m_database.access();
        Transaction transaction(access.session);
        const std::vector<std::string> tokens = tokensOlderThan(time);
        if (!tokens.empty())
            access.session << "DELETE FROM jobs WHERE " << oldJobs, bind(time), now;
        transaction.commit();
        return tokens;
    });
}

} // namespace localservice
