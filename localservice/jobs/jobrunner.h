// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/engine/separation.h"
#include "localservice/jobs/datafolder.h"
#include "localservice/jobs/throughputestimator.h"
#include "localservice/store/jobstore.h"
#include "localservice/store/uploadstore.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>

namespace localservice {

/// A separator: returns false when it was cancelled; throws Refusal when the song cannot be
/// separated, and SeparatorFailed when it may be tried again.
using SeparateFunction = std::function<bool(const SeparationTask &, JobControl &)>;

/// A separator failed without saying why, perhaps because of its machine. what() is a sentence for
/// the user.
class SeparatorFailed final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// How much of a song a demo covers.
inline constexpr double demoSeconds = 30;

/// The settings of a runner.
struct RunnerSettings
{
    int workers = 1;
    int keepDays = 30;
    /// Whether the jobs and uploads of an earlier run have lost their client.
    bool discardsUnfinished = false;
    std::chrono::milliseconds retryDelay = std::chrono::seconds(15);
};

/// Runs the queued jobs on worker threads of its own, and deletes what is no longer needed.
class JobRunner final
{
public:
    /// All references must outlive the runner.
    JobRunner(Database &database, JobStore &jobs, UploadStore &uploads, const DataFolder &folder,
              SeparateFunction separate, const RunnerSettings &settings);
    JobRunner(const JobRunner &) = delete;
    JobRunner &operator=(const JobRunner &) = delete;
    /// Interrupts the running jobs, which go back to their place in the queue, and waits for the
    /// threads.
    ~JobRunner();

    /// To be called after a job was added.
    void notifyJobAdded();
    /// Cancels a waiting or running job; returns whether there was one.
    bool cancel(std::int32_t id);
    /// Whole seconds until a waiting or running job is ready. They do not rise unless a job was
    /// added meanwhile.
    [[nodiscard]] int secondsLeft(const Job &job);
    /// Deletes the uploads that are removed and no longer needed, and refills the disk reserve.
    void purgeUploads();

private:
    using Time = std::chrono::steady_clock::time_point;
    struct Running
    {
        JobControl control;
        double seconds = 0; // of sound
        Time began = std::chrono::steady_clock::now();
        bool cancelledByUser = false;
    };
    struct Failure
    {
        std::string reason; // "": none
        bool mayRetry = false;
    };
    struct Answer
    {
        int addedJobs = -1; // m_addedJobs at its time
        int seconds = 0;
    };

    void takeOver();
    static void cleanUp(const std::function<void()> &change);
    void work();
    [[nodiscard]] std::optional<Job> next();
    [[nodiscard]] const std::vector<QueuedJob> &order();
    void run(const Job &job, Running &running);
    [[nodiscard]] Failure attempt(const Job &job, Running &running);
    void fail(const Job &job, const Failure &failure);
    void process(const Job &job, Running &running);
    // Returns whether the job was not cancelled meanwhile.
    [[nodiscard]] bool finish(const Job &job, const Running &running);
    [[nodiscard]] bool separateJob(const Job &job, Running &running);
    [[nodiscard]] double remaining(const Running &running) const;
    [[nodiscard]] double estimate(const Job &job);
    void runMaintenance();
    void purgeExpired();

    Database &m_database;
    JobStore &m_jobs;
    UploadStore &m_uploads;
    const DataFolder &m_folder;
    SeparateFunction m_separate;
    const RunnerSettings m_settings;
    std::mutex m_unneededMutex;
    std::vector<std::string> m_unneeded; // uploads to delete, once no stopping job has them open
    std::mutex m_mutex; // of all that follows
    std::condition_variable m_changed;
    bool m_stopping = false;
    ThroughputEstimator m_throughput;
    std::map<std::int32_t, std::shared_ptr<Running>> m_running;
    std::optional<std::vector<QueuedJob>> m_order; // empty when it must be read again
    std::map<std::int32_t, Time> m_notBefore; // of failed jobs that wait for another attempt
    std::map<std::int32_t, Answer> m_answers;
    int m_addedJobs = 0;
    std::vector<std::thread> m_threads;
};

} // namespace localservice
