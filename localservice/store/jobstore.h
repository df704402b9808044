// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/database.h"

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
};

/// The jobs of all accounts. They survive the end of the program. Thread-safe.
class JobStore final
{
public:
    explicit JobStore(Database &database)
        : m_database(database)
    { }

    /// Adds a job to the queue and returns its id. While an equal job of the same account waits or
    /// runs, no second one is added: the id is that one's. `uploadName` is the client's
    /// name of the file.
    std::int32_t add(const Job &job, const std::string &uploadName);
    [[nodiscard]] std::optional<Job> find(std::int32_t id);
    [[nodiscard]] std::optional<Job> findByToken(const std::string &token);
    /// An account's waiting or running job equal to this one.
    [[nodiscard]] std::optional<Job> findDuplicate(const Job &job, const std::string &uploadName);
    /// Takes the first job of the queue and marks it as running.
    [[nodiscard]] std::optional<Job> takeNext();
    /// Moves a job on from one state to another; returns whether it was in the first one.
    bool move(std::int32_t id, JobState from, JobState to, const std::string &reason = {});
    /// Puts the jobs that were running when the program ended back to their place in the queue.
    void requeueInterrupted();
    /// The seconds of sound of the jobs that wait before this one.
    [[nodiscard]] double secondsBefore(std::int32_t id);
    /// An account's finished jobs, the newest first.
    [[nodiscard]] std::vector<Job> finishedOf(std::int64_t account);
    /// Deletes the jobs that ended and were added before a time, and returns their tokens.
    [[nodiscard]] std::vector<std::string> takeOlderThan(std::int64_t time);

private:
    [[nodiscard]] std::vector<Job> select(const std::string &condition, std::int64_t value);

    Database &m_database;
};

} // namespace localservice
