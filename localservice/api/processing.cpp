// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/processing.h"

#include "localservice/base/refusal.h"
#include "localservice/engine/wavfile.h"
#include "localservice/store/usage.h"

#include <algorithm>
#include <array>
#include <limits>

namespace localservice {

namespace {

constexpr std::array<std::string_view, 12> extensions = {
    "mp4", "mkv", "mov", "wmv", "mpg", "webm", "mp3", "wav", "m4a", "aiff", "flac", "wma"};
constexpr std::size_t maxNameBytes = 1024;
constexpr std::size_t maxPathBytes = 4096;
// The answer to "how many files may I still send today" when there is no limit.
constexpr int noLimit = 1000000;
// Far more than a person needs: their rows take memory and time.
constexpr int maxWaitingJobs = 200;
constexpr std::int64_t maxKeptFiles = 10000;

constexpr const char *fileGone =
    "The service no longer has this file. Please process it again from the beginning.";

void checkExtension(const std::string &extension)
{
    if (std::find(extensions.begin(), extensions.end(), extension) == extensions.end())
        throw Refusal("The service does not know this output format.");
}

std::string resultUrl(const std::string &base, const Job &job, std::string_view prefix)
{
    std::string url = base + "/results/" + job.token + "/";
    return url.append(prefix).append(job.instrument).append(".wav");
}

} // namespace

Processing::Processing(Database &database, AccountStore &accounts, UploadStore &uploads,
                       JobStore &jobs, JobRunner &runner, Authorizer &authorizer,
                       ArrivingFiles &arriving, const Licence &licence, std::string resultBase)
    : m_database(database)
    , m_accounts(accounts)
    , m_uploads(uploads)
    , m_jobs(jobs)
    , m_runner(runner)
    , m_authorizer(authorizer)
    , m_arriving(arriving)
    , m_licence(licence)
    , m_resultBase(std::move(resultBase))
{ }

Job Processing::jobFrom(const Fields &fields, const Account &account) const
{
    Job job;
    job.account = account.id;
    job.instrument = fields["instrument"];
    job.extension = fields["extension"];
    job.name = fields["fileName"];
    job.original = fields["originalFilePath"];
    const std::string &version = fields["version"];
    job.demo = version == "demo";
    if (!instrumentFromWord(job.instrument))
        throw Refusal("The service does not know this instrument.");
    checkExtension(job.extension);
    if (version != "demo" && version != "full")
        throw Refusal("The service does not know this kind of run.");
    if (!job.demo && m_licence.subscription != Subscription::Active)
        throw Refusal("Processing whole files needs an active subscription.");
    if (job.name.empty() || job.name.size() > maxNameBytes || job.original.size() > maxPathBytes)
        throw Refusal("The name of the file is missing or too long.");
    return job;
}

std::int64_t Processing::uploadAccount(const Fields &fields, const RequestContext &context)
{
    return m_authorizer.require(fields, context).id;
}

std::string Processing::proceed(const Fields &fields, const RequestContext &context,
                                ReceivedFile &file)
{
    const Account account = m_authorizer.require(fields, context);
    const Job job = jobFrom(fields, account);
    if (file.clientName().empty())
        throw Refusal("The file to process is missing.");
    const Upload upload{0,
                        account.id,
                        file.clientName(),
                        file.diskName(),
                        WavReader(file.path()).shape().seconds(),
                        static_cast<std::int64_t>(std::filesystem::file_size(file.path()))};
    return announceJob(accept(job, upload, file));
}

std::int32_t Processing::accept(const Job &job, Upload upload, ReceivedFile &file)
{
    // All or nothing, and one upload at a time: the day's last file must not be taken twice.
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    // The same request once more, such as a client sends that lost the connection.
    if (const std::optional<Job> duplicate = m_jobs.findDuplicate(job, upload.name))
        return duplicate->id;
    if (filesLeft(upload.account) <= 0)
        throw Refusal("You have already processed " + std::to_string(m_licence.filesPerDay)
                      + " files today, the maximum daily number.");
    checkRoom(upload.account, upload.bytes);
    m_accounts.countProcessed(upload.account);
    upload.id = m_uploads.add(upload);
    const std::int32_t id = queue(job, upload);
    transaction.commit();
    file.keep();
    return id;
}

std::int32_t Processing::queue(Job job, const Upload &upload)
{
    // What is checked stays so until the job is added.
    const Database::Access access = m_database.access();
    if (m_jobs.countWaiting(job.account) >= maxWaitingJobs)
        throw Refusal("Too many of your files are waiting. Please try again when some are done.");
    job.upload = upload.id;
    job.seconds = job.demo ? std::min(upload.seconds, demoSeconds) : upload.seconds;
    // Two results as long as the upload; of floats they are shorter.
    job.bytes = 2
        * static_cast<std::int64_t>(static_cast<double>(upload.bytes) * job.seconds
                                    / upload.seconds);
    checkRoom(job.account, job.bytes);
    return m_jobs.add(job);
}

std::uint64_t Processing::uploadRoom(std::int64_t account)
{
    if (m_licence.accountBytes <= 0)
        return std::numeric_limits<std::uint64_t>::max();
    const KeptFiles kept = keptFor(m_database, account);
    if (kept.count >= maxKeptFiles)
        return 0;
    return static_cast<std::uint64_t>(
        std::max<std::int64_t>(0, m_licence.accountBytes - kept.bytes));
}

void Processing::checkRoom(std::int64_t account, std::int64_t bytes)
{
    if (uploadRoom(account) < static_cast<std::uint64_t>(bytes))
        throw Refusal(noRoomForAccount);
}

std::string Processing::announceJob(std::int32_t job)
{
    m_runner.notifyJobAdded();
    m_runner.purgeUploads();
    return std::to_string(job);
}

std::string Processing::repeat(const Fields &fields, const RequestContext &context)
{
    const Account account = m_authorizer.require(fields, context);
    const Job job = jobFrom(fields, account);
    const std::string name = baseName(fields["uploadedFileName"]);
    const std::optional<Upload> upload = m_uploads.find(account.id, name);
    if (!upload && m_arriving.contains(account.id, name))
        throw Refusal("The file is still being uploaded. Please try again in a moment.");
    if (!upload)
        throw Refusal(fileGone);
    return announceJob(queue(job, *upload));
}

std::string Processing::repeatDemo(const Fields &fields, const RequestContext &context)
{
    (void)m_authorizer.require(fields, context);
    Job job = m_authorizer.requireJob(fields, "songId", context);
    if (!job.demo)
        throw Refusal("This file is not a demo: it has already been processed whole.");
    checkExtension(fields["extension"]);
    if (m_licence.subscription != Subscription::Active)
        throw Refusal("Processing whole files needs an active subscription.");
    const std::optional<Upload> upload = m_uploads.find(job.upload);
    if (!upload)
        throw Refusal(fileGone);
    job.demo = false;
    job.extension = fields["extension"];
    return announceJob(queue(job, *upload));
}

std::string Processing::remains(const Fields &fields, const RequestContext &context)
{
    const Job job = m_authorizer.requireJob(fields, "songID", context);
    switch (job.state) {
    case JobState::Queued:
    case JobState::Running:
        return std::to_string(m_runner.secondsLeft(job));
    case JobState::Ready:
        return "-1";
    case JobState::Cancelled:
        throw Refusal("The processing of this file was cancelled.");
    case JobState::Failed:
        break;
    }
    throw Refusal(job.reason);
}

std::string Processing::cancel(const Fields &fields, const RequestContext &context)
{
    const Job job = m_authorizer.requireJob(fields, "songID", context);
    return m_runner.cancel(job.id) ? "Cancelled." : "There was nothing left to cancel.";
}

std::string Processing::download(const Fields &fields, const RequestContext &context)
{
    const Job job = m_authorizer.requireJob(fields, "songID", context);
    if (job.state != JobState::Ready)
        throw Refusal("The results of this file are not ready.");
    return resultUrl(m_resultBase, job, "") + "|" + resultUrl(m_resultBase, job, "mix-without-");
}

std::string Processing::removeUploaded(const Fields &fields, const RequestContext &context)
{
    m_uploads.remove(m_authorizer.require(fields, context).id, baseName(fields["fileName"]));
    m_runner.purgeUploads();
    return "Removed.";
}

std::string Processing::processedFilesRemains(const Fields &fields, const RequestContext &context)
{
    return std::to_string(filesLeft(m_authorizer.require(fields, context).id));
}

int Processing::filesLeft(std::int64_t account)
{
    if (m_licence.filesPerDay <= 0)
        return noLimit;
    return std::max(0, m_licence.filesPerDay - m_accounts.processedToday(account));
}

} // namespace localservice
