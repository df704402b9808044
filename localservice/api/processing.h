// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/caller.h"
#include "localservice/api/subscription.h"
#include "localservice/http/receivedfile.h"
#include "localservice/jobs/runner.h"

namespace localservice {

/// The requests about songs. Each takes a form and gives the text of the reply, or throws Refusal
/// with the sentence that is the reply. Thread-safe.
class Processing final
{
public:
    Processing(Database &database, AccountStore &accounts, UploadStore &uploads, JobStore &jobs,
               Runner &runner, Gate &gate, ArrivingFiles &arriving, const Licence &licence);

    /// The account of an upload whose file begins to arrive, as far as the request has told by
    /// then; 0: not yet.
    [[nodiscard]] std::int64_t uploader(const Fields &fields, const Caller &caller);
    /// A new file to process. Takes its content over on success.
    [[nodiscard]] std::string proceed(const Fields &fields, const Caller &caller,
                                      ReceivedFile &file);
    [[nodiscard]] std::string repeat(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string repeatDemo(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string remains(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string cancel(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string download(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string removeUploaded(const Fields &fields, const Caller &caller);
    [[nodiscard]] std::string processedFilesRemains(const Fields &fields, const Caller &caller);

private:
    [[nodiscard]] Job jobFrom(const Fields &fields, const Account &account) const;
    [[nodiscard]] std::int32_t accept(const Job &job, Upload upload, ReceivedFile &file);
    [[nodiscard]] std::int32_t queue(Job job, const Upload &upload);
    [[nodiscard]] std::string begun(std::int32_t job);
    [[nodiscard]] int filesLeft(std::int64_t account);

    Database &m_database;
    AccountStore &m_accounts;
    UploadStore &m_uploads;
    JobStore &m_jobs;
    Runner &m_runner;
    Gate &m_gate;
    ArrivingFiles &m_arriving;
    Licence m_licence;
};

} // namespace localservice
