// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/processing.h"

#include "localservice/base/refusal.h"
#include "localservice/engine/wavfile.h"

#include <algorithm>
#include <array>
#include <limits>

namespace localservice {

namespace {

    constexpr std::array<std::string_view, 12> kExtensions = {
        "mp4", "mkv", "mov", "wmv", "mpg", "webm", "mp3", "wav", "m4a", "aiff", "flac", "wma"};
    constexpr std::size_t kLongestName = 1024;
    constexpr std::size_t kLongestPath = 32768;
    // The answer to "how many files may I still send today" when there is no limit.
    constexpr int kNoLimit = 1000000;

    constexpr const char *kFileGone =
        "The service no longer has this file. Please process it again from the beginning.";

    void checkExtension(const std::string &extension)
    {
        if (std::find(kExtensions.begin(), kExtensions.end(), extension) == kExtensions.end())
            throw Refusal("The service does not know this output format.");
    }

    std::string resultUrl(const Job &job, const Caller &caller, std::string_view prefix)
    {
        std::string url = caller.origin + "/results/" + job.token + "/";
        return url.append(prefix).append(job.instrument).append(".wav");
    }

} // namespace

Processing::Processing(Database &database, AccountStore &accounts, UploadStore &uploads,
                       JobStore &jobs, Runner &runner, Gate &gate, ArrivingFiles &arriving,
                       const Licence &licence)
    : m_database(database)
    , m_accounts(accounts)
    , m_uploads(uploads)
    , m_jobs(jobs)
    , m_runner(runner)
    , m_gate(gate)
    , m_arriving(arriving)
    , m_licence(licence)
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
    if (job.name.empty() || job.name.size() > kLongestName || job.original.size() > kLongestPath)
        throw Refusal("The name of the file is missing or too long.");
    return job;
}

std::int64_t Processing::uploader(const Fields &fields, const Caller &caller)
{
    return sessionOf(fields, caller).empty() ? 0 : m_gate.require(fields, caller).id;
}

std::string Processing::proceed(const Fields &fields, const Caller &caller, ReceivedFile &file)
{
    const Account account = m_gate.require(fields, caller);
    const Job job = jobFrom(fields, account);
    if (file.clientName().empty())
        throw Refusal("The file to process is missing.");
    const Upload upload{0, account.id, file.clientName(), file.diskName(),
                        WavReader(file.path()).shape().seconds()};
    return begun(accept(job, upload, file));
}

std::int32_t Processing::accept(const Job &job, Upload upload, ReceivedFile &file)
{
    // All or nothing, and one upload at a time: the day's last file must not be taken twice.
    Database::Access access = m_database.access();
    Transaction transaction(access.session);
    if (const std::optional<Job> twin = m_jobs.findTwin(job, upload.name))
        return twin->id;
    if (filesLeft(upload.account) <= 0)
        throw Refusal("You have already processed " + std::to_string(m_licence.filesPerDay)
                      + " files today, the maximum daily number.");
    m_accounts.countProcessed(upload.account);
    upload.id = m_uploads.add(upload);
    const std::int32_t id = queue(job, upload);
    transaction.commit();
    file.keep();
    return id;
}

std::int32_t Processing::queue(Job job, const Upload &upload)
{
    job.upload = upload.id;
    job.seconds = job.demo ? std::min(upload.seconds, kDemoSeconds) : upload.seconds;
    return m_jobs.add(job, upload.name);
}

std::string Processing::begun(std::int32_t job)
{
    m_runner.wake();
    m_runner.sweepUploads();
    return std::to_string(job);
}

std::string Processing::repeat(const Fields &fields, const Caller &caller)
{
    const Account account = m_gate.require(fields, caller);
    const Job job = jobFrom(fields, account);
    const std::string name = baseName(fields["uploadedFileName"]);
    const std::optional<Upload> upload = m_uploads.find(account.id, name);
    if (!upload && m_arriving.contains(account.id, name))
        throw Refusal("The file is still being uploaded. Please try again in a moment.");
    if (!upload)
        throw Refusal(kFileGone);
    return begun(queue(job, *upload));
}

std::string Processing::repeatDemo(const Fields &fields, const Caller &caller)
{
    (void)m_gate.require(fields, caller);
    Job job = m_gate.requireJob(fields, "songId", caller);
    if (!job.demo)
        throw Refusal("This file is not a demo: it has already been processed whole.");
    checkExtension(fields["extension"]);
    if (m_licence.subscription != Subscription::Active)
        throw Refusal("Processing whole files needs an active subscription.");
    const std::optional<Upload> upload = m_uploads.find(job.upload);
    if (!upload)
        throw Refusal(kFileGone);
    job.demo = false;
    job.extension = fields["extension"];
    return begun(queue(job, *upload));
}

std::string Processing::remains(const Fields &fields, const Caller &caller)
{
    const Job job = m_gate.requireJob(fields, "songID", caller);
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

std::string Processing::cancel(const Fields &fields, const Caller &caller)
{
    const Job job = m_gate.requireJob(fields, "songID", caller);
    return m_runner.cancel(job.id) ? "Cancelled." : "There was nothing left to cancel.";
}

std::string Processing::download(const Fields &fields, const Caller &caller)
{
    const Job job = m_gate.requireJob(fields, "songID", caller);
    if (job.state != JobState::Ready)
        throw Refusal("The results of this file are not ready.");
    return resultUrl(job, caller, "") + "|" + resultUrl(job, caller, "mix-without-");
}

std::string Processing::removeUploaded(const Fields &fields, const Caller &caller)
{
    m_uploads.remove(m_gate.require(fields, caller).id, baseName(fields["fileName"]));
    m_runner.sweepUploads();
    return "Removed.";
}

std::string Processing::processedFilesRemains(const Fields &fields, const Caller &caller)
{
    return std::to_string(filesLeft(m_gate.require(fields, caller).id));
}

int Processing::filesLeft(std::int64_t account)
{
    if (m_licence.filesPerDay <= 0)
        return kNoLimit;
    return std::max(0, m_licence.filesPerDay - m_accounts.processedToday(account));
}

} // namespace localservice
