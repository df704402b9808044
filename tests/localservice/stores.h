// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/base/secrets.h"
#include "localservice/jobs/jobrunner.h"
#include "localservice/store/accountstore.h"
#include "sounds.h"

#include <QTemporaryDir>

using namespace localservice;

/// The stores of a service, opened on one folder.
struct Stores
{
    explicit Stores(const QTemporaryDir &dir)
        : folder(dir.filePath("data").toStdString())
        , database(folder.database(), folder.filesOfDatabase())
        , accounts(database,
                   [this] {
                       std::this_thread::yield(); // lets other threads come between
                       return start + secondsLater;
                   })
        , uploads(database)
        , jobs(database)
    { }

    /// A runner of all jobs.
    [[nodiscard]] std::unique_ptr<JobRunner> run(SeparateFunction separate, int workers = 1,
                                                 bool discardsUnfinished = false)
    {
        return std::make_unique<JobRunner>(
            database, jobs, uploads, folder, std::move(separate),
            RunnerSettings{workers, 30, discardsUnfinished, std::chrono::milliseconds(1)});
    }
    std::int64_t addAccount(const std::string &email)
    {
        return accounts.add({email, email, ""}).id;
    }
    std::optional<Job> startNext() { return jobs.start(jobs.queued().front().id); }
    [[nodiscard]] JobState stateOf(std::int32_t job) { return jobs.find(job)->state; }

    /// An account's upload of some name with one job.
    std::int32_t addJob(std::int64_t account, const std::string &name, bool demo = false)
    {
        Job job;
        job.account = account;
        job.instrument = "drums";
        job.extension = "mp3";
        job.demo = demo;
        job.seconds = 60;
        const std::string file = randomHex(16) + ".wav";
        job.upload = uploads.add({0, account, name, file, 60, 100});
        writeWav(folder.upload(file), {1, 8000, 16, 8000}, std::vector<std::int32_t>(8000));
        return jobs.add(job);
    }

    [[nodiscard]] bool hasFile(std::int64_t upload)
    {
        const std::optional<Upload> found = uploads.find(upload);
        return found && std::filesystem::exists(folder.upload(found->file));
    }

    // The accounts' clock stands still, so that no test meets midnight.
    const std::int64_t start = secondsNow();
    std::int64_t secondsLater = 0;
    DataFolder folder;
    Database database;
    AccountStore accounts;
    UploadStore uploads;
    JobStore jobs;
};

/// A separator that waits until it is cancelled.
inline bool waitForCancel(const SeparationTask &, JobControl &control)
{
    control.progress = 0.5;
    while (!control.cancelled)
        std::this_thread::yield();
    return false;
}

inline bool copyTwice(const SeparationTask &task, JobControl &)
{
    std::filesystem::copy_file(task.input, task.main);
    std::filesystem::copy_file(task.input, task.mix);
    return true;
}
