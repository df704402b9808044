// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/authorizer.h"
#include "localservice/api/licence.h"
#include "localservice/http/receivedfile.h"
#include "localservice/jobs/jobrunner.h"

namespace localservice {

/// The requests about songs. Each takes a form and returns the text of the reply, or throws Refusal
/// with the sentence that is the reply. Thread-safe.
class Processing final
{
public:
    /// `resultBase` is the base address of the results, absolute or relative to "/teko-server/".
    Processing(Database &database, AccountStore &accounts, UploadStore &uploads, JobStore &jobs,
               JobRunner &runner, Authorizer &authorizer, ArrivingFiles &arriving,
               const Licence &licence, std::string resultBase);

    /// The account of an upload whose file part begins, by the cookie and the fields before it.
    /// Throws Refusal when these state no session.
    [[nodiscard]] std::int64_t uploadAccount(const Fields &fields, const RequestContext &context);
    /// The bytes that an account may still send.
    [[nodiscard]] std::uint64_t uploadRoom(std::int64_t account);
    /// A new file to process. Takes its content over on success.
    [[nodiscard]] std::string proceed(const Fields &fields, const RequestContext &context,
                                      ReceivedFile &file);
    [[nodiscard]] std::string repeat(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string repeatDemo(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string remains(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string cancel(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string download(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string removeUploaded(const Fields &fields, const RequestContext &context);
    [[nodiscard]] std::string processedFilesRemains(const Fields &fields,
                                                    const RequestContext &context);

private:
    [[nodiscard]] Job jobFrom(const Fields &fields, const Account &account) const;
    [[nodiscard]] std::int32_t accept(const Job &job, Upload upload, ReceivedFile &file);
    [[nodiscard]] std::int32_t queue(Job job, const Upload &upload);
    [[nodiscard]] std::string announceJob(std::int32_t job);
    [[nodiscard]] int filesLeft(std::int64_t account);
    void checkRoom(std::int64_t account, std::int64_t bytes);

    Database &m_database;
    AccountStore &m_accounts;
    UploadStore &m_uploads;
    JobStore &m_jobs;
    JobRunner &m_runner;
    Authorizer &m_authorizer;
    ArrivingFiles &m_arriving;
    Licence m_licence;
    std::string m_resultBase;
};

} // namespace localservice
