// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/database.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace localservice {

enum class JobState { Queued, Running, Ready, Failed, Cancelled };

/// A request of an account to separate one song.
struct Job
{
    std::int32_t id = 0;
    std::int64_t account = 0;
    std::int64_t upload = 0;
    std::string instrument;
    std::string extension; ///< the format that the client turns the results into
    bool demo = false; ///< only the song's beginning
    std::string name; ///< the song's name, as the user knows it
    std::string original; ///< where the song lies on the user's machine
    double seconds = 0; ///< how much sound there is to process
    JobState state = JobState::Queued;
    std::string reason; ///< one sentence, when it failed
    std::string token; ///< the unguessable part of the results' addresses
    std::int64_t added = 0;
    std::int64_t bytes = 0; ///< that its results take on the disk
    int attempts = 0; ///< how often it was started
};

/// A waiting job.
struct QueuedJob
{
    std::int32_t id = 0;
    std::int64_t account = 0;
    double seconds = 0; ///< of sound

    bool operator==(const QueuedJob &) const = default;
};

/// The jobs of all accounts, kept across restarts. Thread-safe.
class JobStore final
{
public:
    explicit JobStore(Database &database)
        : m_database(database)
    { }

    /// Adds a job to the queue and returns its id. The account's oldest failed and cancelled jobs
    /// beyond maxUnsuccessful are deleted.
    std::int32_t add(const Job &job);
    [[nodiscard]] std::optional<Job> find(std::int32_t id);
    [[nodiscard]] std::optional<Job> findByToken(const std::string &token);
    /// An account's waiting or running job equal to this one.
    [[nodiscard]] std::optional<Job> findDuplicate(const Job &job, const std::string &uploadName);
    /// The waiting jobs, the oldest first.
    [[nodiscard]] std::vector<QueuedJob> queued();
    /// When each account's latest job was started: a number that rises with every start.
    [[nodiscard]] std::map<std::int64_t, std::int64_t> lastStarts();
    /// Marks a waiting job as running and counts the attempt. Empty when it is no longer waiting.
    [[nodiscard]] std::optional<Job> start(std::int32_t id);
    /// Puts a running job back to its place in the queue, as if it had not been started.
    void putBack(std::int32_t id);
    /// Moves a job on from one state to another; returns whether it was in the first one.
    bool move(std::int32_t id, JobState from, JobState to, const std::string &reason = {});
    /// Puts the jobs that were running when the program died back to their place in the queue.
    /// Those that were running at maxAttempts such ends fail with the reason.
    void requeueInterrupted(const std::string &reason);
    /// Fails all waiting and running jobs with the reason.
    void failUnfinished(const std::string &reason);
    /// How many jobs of an account are waiting.
    [[nodiscard]] int countWaiting(std::int64_t account);
    /// The tokens of all jobs.
    [[nodiscard]] std::vector<std::string> tokens();
    /// An account's finished jobs, the newest first, at most `maxCount`.
    [[nodiscard]] std::vector<Job> finishedOf(std::int64_t account, int maxCount);
    /// The tokens of the jobs that ended and were added before a time.
    [[nodiscard]] std::vector<std::string> tokensOlderThan(std::int64_t time);
    /// Deletes the jobs that ended and were added before a time, and returns their tokens.
    [[nodiscard]] std::vector<std::string> takeOlderThan(std::int64_t time);

    /// How often a job is started before it fails.
    static constexpr int maxAttempts = 2;
    /// How many failed and cancelled jobs of an account are remembered.
    static constexpr int maxUnsuccessful = 200;

private:
    [[nodiscard]] std::vector<Job> select(const std::string &condition, std::int64_t value);
    bool moveNow(std::int32_t id, JobState from, JobState to, const std::string &reason);

    Database &m_database;
};

} // namespace localservice
