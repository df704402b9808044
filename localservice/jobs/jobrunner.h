// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/jobs/datafolder.h"
#include "localservice/jobs/throughputestimator.h"
#include "localservice/store/jobstore.h"
#include "localservice/store/uploadstore.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <thread>

namespace localservice {

/// A separator: the built-in one or an external program. See separate().
using SeparateFunction = std::function<bool(const SeparationTask &, JobControl &)>;

/// How much of a song a demo covers.
inline constexpr double demoSeconds = 30;

/// Runs the queued jobs on worker threads of its own, and deletes what is no longer needed.
class JobRunner final
{
public:
    JobRunner(JobStore &jobs, UploadStore &uploads, const DataFolder &folder,
              SeparateFunction separate, int workers, int keepDays);
    JobRunner(const JobRunner &) = delete;
    JobRunner &operator=(const JobRunner &) = delete;
    /// Interrupts the running jobs, which go back to their place in the queue, and waits for the
    /// threads.
    ~JobRunner();

    /// To be called after a job was added.
    void notifyJobAdded();
    /// Cancels a waiting or running job; returns whether there was one.
    bool cancel(std::int32_t id);
    /// Whole seconds until a waiting or running job is ready. They never rise while it runs.
    [[nodiscard]] int secondsLeft(const Job &job);
    /// Deletes the uploads that are removed and no longer needed.
    void purgeUploads();

private:
    struct Running
    {
        JobControl control;
        std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
        int lastAnswer = -1;
        bool cancelledByUser = false;
    };

    void work();
    [[nodiscard]] std::optional<Job> next();
    void run(const Job &job);
    /// Processes a job and returns the sentence about its failure, "" when there was none.
    [[nodiscard]] std::string attempt(const Job &job, Running &running);
    void finish(const Job &job, Running &running);
    [[nodiscard]] bool separateJob(const Job &job, Running &running);
    void runMaintenance();
    void purgeExpired();
    [[nodiscard]] std::shared_ptr<Running> find(std::int32_t id);

    JobStore &m_jobs;
    UploadStore &m_uploads;
    const DataFolder &m_folder;
    SeparateFunction m_separate;
    int m_keepDays;
    ThroughputEstimator m_throughput;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<std::int32_t, std::shared_ptr<Running>> m_running;
    std::vector<std::thread> m_threads;
};

} // namespace localservice
