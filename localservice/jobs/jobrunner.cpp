// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/jobrunner.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"

#include <Poco/Exception.h>

namespace localservice {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::chrono::hours maintenanceInterval{1};
// An idle worker looks at the queue this often, in case an earlier look failed.
constexpr std::chrono::seconds idleInterval{10};
constexpr const char *internalError = "The service could not process the file.";

} // namespace

JobRunner::JobRunner(JobStore &jobs, UploadStore &uploads, const DataFolder &folder,
                     SeparateFunction separate, int workers, int keepDays)
    : m_jobs(jobs)
    , m_uploads(uploads)
    , m_folder(folder)
    , m_separate(std::move(separate))
    , m_keepDays(keepDays)
    , m_throughput(workers)
{
    m_jobs.requeueInterrupted();
    purgeExpired();
    m_folder.removeLeftovers(m_uploads.files());
    for (int i = 0; i < workers; ++i)
        m_threads.emplace_back(&JobRunner::work, this);
    m_threads.emplace_back(&JobRunner::runMaintenance, this);
}

JobRunner::~JobRunner()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        for (const auto &[id, running] : m_running)
            running->control.cancelled = true;
    }
    m_changed.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void JobRunner::notifyJobAdded()
{
    // Taking the lock keeps the call from falling between a worker's look at the queue and its
    // sleep.
    const std::lock_guard lock(m_mutex);
    m_changed.notify_all();
}

void JobRunner::work()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        const std::optional<Job> job = next();
        if (!job) {
            m_changed.wait_for(lock, idleInterval);
            continue;
        }
        m_running[job->id] = std::make_shared<Running>();
        lock.unlock();
        run(*job);
        lock.lock();
        m_running.erase(job->id);
    }
}

std::optional<Job> JobRunner::next()
{
    try {
        return m_jobs.takeNext();
    } catch (const Poco::Exception &error) {
        // On a full disk, for one. The job stays in the queue for later.
        log("Could not take the next job: " + error.displayText());
        return std::nullopt;
    }
}

void JobRunner::run(const Job &job)
{
    try {
        const std::string failure = attempt(job, *find(job.id));
        m_folder.removeStagingDir(job.token);
        if (!failure.empty()) {
            log("Job " + std::to_string(job.id) + " failed: " + failure);
            m_jobs.move(job.id, JobState::Running, JobState::Failed, failure);
        }
        purgeUploads();
    } catch (const Poco::Exception &error) {
        log("Could not note the end of job " + std::to_string(job.id) + ": " + error.displayText());
    }
}

std::string JobRunner::attempt(const Job &job, Running &running)
{
    try {
        finish(job, running);
        return {};
    } catch (const Refusal &refusal) {
        return refusal.what();
    } catch (const Poco::Exception &error) {
        log("Job " + std::to_string(job.id) + ": " + error.displayText());
    } catch (const std::exception &error) {
        log("Job " + std::to_string(job.id) + ": " + error.what());
    }
    return internalError;
}

void JobRunner::finish(const Job &job, Running &running)
{
    if (separateJob(job, running)) {
        m_folder.publish(job.token);
        m_throughput.addMeasurement(job.seconds, std::chrono::steady_clock::now() - running.began);
        m_jobs.move(job.id, JobState::Running, JobState::Ready);
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_jobs.move(job.id, JobState::Running,
                running.cancelledByUser ? JobState::Cancelled : JobState::Queued);
}

bool JobRunner::separateJob(const Job &job, Running &running)
{
    const std::optional<Upload> upload = m_uploads.find(job.upload);
    const std::optional<Part> instrument = instrumentFromWord(job.instrument);
    if (!upload || !instrument)
        throw Refusal("The service no longer has this file.");
    const std::filesystem::path stagingDir = m_folder.makeStagingDir(job.token);
    const SeparationTask task{m_folder.upload(upload->file), *instrument,
                              job.demo ? std::optional(demoSeconds) : std::nullopt,
                              stagingDir / mainFile, stagingDir / mixFile};
    return m_separate(task, running.control);
}

std::shared_ptr<JobRunner::Running> JobRunner::find(std::int32_t id)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_running.find(id);
    return found == m_running.end() ? nullptr : found->second;
}

bool JobRunner::cancel(std::int32_t id)
{
    const std::lock_guard lock(m_mutex);
    if (m_jobs.move(id, JobState::Queued, JobState::Cancelled))
        return true;
    const auto found = m_running.find(id);
    if (found == m_running.end())
        return false;
    found->second->cancelledByUser = true;
    found->second->control.cancelled = true;
    // At once, so that the same request made now starts a new job.
    return m_jobs.move(id, JobState::Running, JobState::Cancelled);
}

int JobRunner::secondsLeft(const Job &job)
{
    JobProgress progress;
    progress.seconds = job.seconds;
    const std::shared_ptr<Running> running = find(job.id);
    if (!running) {
        progress.secondsBefore = m_jobs.secondsBefore(job.id);
        return m_throughput.secondsLeft(progress);
    }
    progress.share = running->control.progress;
    progress.elapsed = std::chrono::steady_clock::now() - running->began;
    const int seconds = m_throughput.secondsLeft(progress);
    const std::lock_guard lock(m_mutex);
    if (running->lastAnswer < 0 || seconds < running->lastAnswer)
        running->lastAnswer = seconds;
    return running->lastAnswer;
}

void JobRunner::purgeUploads()
{
    for (const std::string &file :
         m_uploads.takeUnneeded(secondsNow() - m_keepDays * secondsPerDay))
        m_folder.removeUpload(file);
}

void JobRunner::purgeExpired()
{
    const std::int64_t before = secondsNow() - m_keepDays * secondsPerDay;
    m_uploads.removeOlderThan(before);
    for (const std::string &token : m_jobs.takeOlderThan(before))
        m_folder.removeResults(token);
    purgeUploads();
}

void JobRunner::runMaintenance()
{
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, maintenanceInterval, [this] { return m_stopping; })) {
        lock.unlock();
        try {
            purgeExpired();
        } catch (const Poco::Exception &error) {
            log("Could not clean up: " + error.displayText());
        }
        lock.lock();
    }
}

} // namespace localservice
