// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/jobs/datafolder.h"
#include "localservice/jobs/pace.h"
#include "localservice/store/jobstore.h"
#include "localservice/store/uploadstore.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <thread>

namespace localservice {

/// What takes a song apart: the built-in separator or a program of the user's. See separate().
using Separate = std::function<bool(const SeparationTask &, JobControl &)>;

/// How much of a song a demo covers.
inline constexpr double kDemoSeconds = 30;

/// Works through the queue of jobs on threads of its own, and cleans up behind them.
class Runner final
{
public:
    Runner(JobStore &jobs, UploadStore &uploads, const DataFolder &folder, Separate separate,
           int workers, int keepDays);
    Runner(const Runner &) = delete;
    Runner &operator=(const Runner &) = delete;
    /// Interrupts the running jobs, which go back to their place in the queue, and waits for the
    /// threads.
    ~Runner();

    /// There is a new job.
    void wake();
    /// Cancels a waiting or running job; gives whether there was one.
    bool cancel(std::int32_t id);
    /// Whole seconds until a waiting or running job is ready. They never rise while it runs.
    [[nodiscard]] int secondsLeft(const Job &job);
    /// Deletes the uploads that are removed and no longer needed.
    void sweepUploads();

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
    /// Processes a job and gives the sentence about its failure, "" when there was none.
    [[nodiscard]] std::string attempt(const Job &job, Running &running);
    void finish(const Job &job, Running &running);
    [[nodiscard]] bool separateJob(const Job &job, Running &running);
    void keepHouse();
    void sweepOld();
    [[nodiscard]] std::shared_ptr<Running> find(std::int32_t id);

    JobStore &m_jobs;
    UploadStore &m_uploads;
    const DataFolder &m_folder;
    Separate m_separate;
    int m_keepDays;
    Pace m_pace;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<std::int32_t, std::shared_ptr<Running>> m_running;
    std::vector<std::thread> m_threads;
};

} // namespace localservice
