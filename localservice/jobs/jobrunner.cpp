// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/jobrunner.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"
#include "localservice/jobs/excerpt.h"
#include "localservice/jobs/jobschedule.h"

#include <Poco/Exception.h>

#include <algorithm>
#include <cmath>

namespace localservice {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::chrono::hours maintenanceInterval{1};
// An idle worker looks at the queue this often, in case an earlier look failed.
constexpr std::chrono::milliseconds idleInterval{10000};
constexpr double maxSeconds = 7 * 24 * 3600;
constexpr const char *internalError = "The service could not process the file.";
constexpr const char *interrupted = "The service was interrupted. Please process the file again.";
constexpr const char *repeatedlyInterrupted =
    "The service ended unexpectedly each time it processed this file.";

} // namespace

JobRunner::JobRunner(Database &database, JobStore &jobs, UploadStore &uploads,
                     const DataFolder &folder, SeparateFunction separate,
                     const RunnerSettings &settings)
    : m_database(database)
    , m_jobs(jobs)
    , m_uploads(uploads)
    , m_folder(folder)
    , m_separate(std::move(separate))
    , m_settings(settings)
{
    cleanUp([this] { takeOver(); });
    for (int i = 0; i < settings.workers; ++i)
        m_threads.emplace_back(&JobRunner::work, this);
    m_threads.emplace_back(&JobRunner::runMaintenance, this);
}

void JobRunner::takeOver()
{
    // First what makes room, if the disk is full.
    m_folder.removeLeftovers(m_uploads.files());
    purgeExpired();
    if (m_settings.discardsUnfinished) {
        m_jobs.failUnfinished(interrupted);
        m_uploads.removeOlderThan(secondsNow() + 1);
    }
    m_jobs.requeueInterrupted(repeatedlyInterrupted);
    purgeUploads();
}

void JobRunner::cleanUp(const std::function<void()> &change)
{
    try {
        change();
    } catch (const Poco::Exception &error) {
        // On a full disk results can still be fetched, and the next try may succeed.
        log("Could not clean up: " + error.displayText());
    }
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
    ++m_addedJobs;
    m_order.reset();
    m_changed.notify_all();
}

void JobRunner::work()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        const std::optional<Job> job = next();
        if (!job) {
            m_changed.wait_for(lock, std::min(idleInterval, m_settings.retryDelay));
            continue;
        }
        const auto running = std::make_shared<Running>();
        running->seconds = job->seconds;
        m_running[job->id] = running;
        lock.unlock();
        run(*job, *running);
        lock.lock();
        m_running.erase(job->id);
        m_order.reset();
    }
}

std::optional<Job> JobRunner::next()
{
    const Time now = std::chrono::steady_clock::now();
    try {
        for (const QueuedJob &queued : order()) {
            const auto delayed = m_notBefore.find(queued.id);
            if (delayed != m_notBefore.end() && delayed->second > now)
                continue;
            m_notBefore.erase(queued.id);
            const std::int32_t id = queued.id;
            m_order.reset();
            return m_jobs.start(id);
        }
    } catch (const Poco::Exception &error) {
        // The job stays in the queue for later.
        log("Could not take the next job: " + error.displayText());
    }
    return std::nullopt;
}

const std::vector<QueuedJob> &JobRunner::order()
{
    if (!m_order)
        m_order = startOrder(m_jobs.queued(), m_jobs.lastStarts());
    return *m_order;
}

void JobRunner::run(const Job &job, Running &running)
{
    try {
        const Failure failure = attempt(job, running);
        m_folder.removeStagingDir(job.token);
        if (!failure.reason.empty())
            fail(job, failure);
        purgeUploads();
    } catch (const Poco::Exception &error) {
        log("Could not record the end of job " + std::to_string(job.id) + ": "
            + error.displayText());
    }
}

JobRunner::Failure JobRunner::attempt(const Job &job, Running &running)
{
    try {
        process(job, running);
        return {};
    } catch (const Refusal &refusal) {
        return {refusal.what(), false};
    } catch (const SeparatorFailed &failure) {
        return {failure.what(), true};
    } catch (const Poco::Exception &error) {
        log("Job " + std::to_string(job.id) + ": " + error.displayText());
    } catch (const std::exception &error) {
        log("Job " + std::to_string(job.id) + ": " + error.what());
    }
    return {internalError, false};
}

void JobRunner::fail(const Job &job, const Failure &failure)
{
    const std::lock_guard lock(m_mutex);
    // The separator may have been ended together with the service.
    if (m_stopping && failure.mayRetry) {
        m_jobs.putBack(job.id);
        return;
    }
    const bool retry = failure.mayRetry && job.attempts < JobStore::maxAttempts;
    log("Job " + std::to_string(job.id) + " failed: " + failure.reason
        + (retry ? " It is tried once more." : ""));
    if (!retry) {
        m_jobs.move(job.id, JobState::Running, JobState::Failed, failure.reason);
        m_answers.erase(job.id);
        return;
    }
    m_notBefore[job.id] = std::chrono::steady_clock::now() + m_settings.retryDelay;
    m_jobs.move(job.id, JobState::Running, JobState::Queued);
}

void JobRunner::process(const Job &job, Running &running)
{
    const bool isDone = separateJob(job, running);
    if (isDone)
        m_folder.publish(job.token);
    if (isDone && !finish(job, running))
        m_folder.removeResults(job.token);
    const std::lock_guard lock(m_mutex);
    if (!isDone && !running.cancelledByUser)
        m_jobs.putBack(job.id);
}

bool JobRunner::finish(const Job &job, const Running &running)
{
    const std::lock_guard lock(m_mutex);
    m_throughput.addMeasurement(job.seconds, std::chrono::steady_clock::now() - running.began);
    m_answers.erase(job.id);
    return m_jobs.move(job.id, JobState::Running, JobState::Ready);
}

bool JobRunner::separateJob(const Job &job, Running &running)
{
    const std::optional<Upload> upload = m_uploads.find(job.upload);
    const std::optional<Part> instrument = instrumentFromWord(job.instrument);
    if (!upload || !instrument)
        throw Refusal("The service no longer has this file.");
    const std::filesystem::path stagingDir = m_folder.makeStagingDir(job.token);
    SeparationTask task{m_folder.upload(upload->file), *instrument, stagingDir / mainFile,
                        stagingDir / mixFile, "Job " + std::to_string(job.id)};
    const std::filesystem::path excerpt = stagingDir / "excerpt.wav";
    if (job.demo) {
        copyBeginning(task.input, demoSeconds, excerpt);
        task.input = excerpt;
    }
    const bool isDone = m_separate(task, running.control);
    std::filesystem::remove(excerpt);
    return isDone;
}

bool JobRunner::cancel(std::int32_t id)
{
    const std::lock_guard lock(m_mutex);
    m_order.reset();
    m_answers.erase(id);
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
    const std::lock_guard lock(m_mutex);
    const double exact = std::clamp(estimate(job), 0.0, maxSeconds);
    int seconds = static_cast<int>(std::ceil(exact));
    Answer &last = m_answers[job.id];
    if (last.addedJobs == m_addedJobs)
        seconds = std::min(seconds, last.seconds);
    last = {m_addedJobs, seconds};
    return seconds;
}

double JobRunner::remaining(const Running &running) const
{
    return m_throughput.remaining({running.seconds, running.control.progress,
                                   std::chrono::steady_clock::now() - running.began});
}

double JobRunner::estimate(const Job &job)
{
    if (const auto found = m_running.find(job.id); found != m_running.end())
        return remaining(*found->second);
    std::vector<double> running;
    for (const auto &[id, other] : m_running)
        running.push_back(remaining(*other));
    std::vector<double> before;
    for (const QueuedJob &queued : order()) {
        if (queued.id == job.id)
            break;
        before.push_back(m_throughput.duration(queued.seconds));
    }
    return waitingTime(running, before, m_settings.workers) + m_throughput.duration(job.seconds);
}

void JobRunner::purgeUploads()
{
    const std::int64_t before = secondsNow() - m_settings.keepDays * secondsPerDay;
    const std::vector<std::string> files = m_uploads.takeUnneeded(before);
    {
        const std::lock_guard lock(m_unneededMutex);
        m_unneeded.insert(m_unneeded.end(), files.begin(), files.end());
        std::erase_if(m_unneeded,
                      [this](const std::string &file) { return m_folder.removeUpload(file); });
    }
    m_database.refillReserve();
}

void JobRunner::purgeExpired()
{
    const std::int64_t before = secondsNow() - m_settings.keepDays * secondsPerDay;
    // Files before rows: it takes room to delete rows. The second list may have become longer.
    for (const std::string &token : m_jobs.tokensOlderThan(before))
        m_folder.removeResults(token);
    for (const std::string &token : m_jobs.takeOlderThan(before))
        m_folder.removeResults(token);
    m_uploads.removeOlderThan(before);
    m_folder.removeUnknownResults(m_jobs.tokens(), before);
    purgeUploads();
}

void JobRunner::runMaintenance()
{
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, maintenanceInterval, [this] { return m_stopping; })) {
        lock.unlock();
        cleanUp([this] { purgeExpired(); });
        lock.lock();
    }
}

} // namespace localservice
