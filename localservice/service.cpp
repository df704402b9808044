// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/service.h"

#include "localservice/base/paths.h"
#include "localservice/jobs/commandseparator.h"

#include <Poco/JSON/Object.h>

#include <sstream>

namespace localservice {

namespace {

SeparateFunction separatorOf(const Options &options)
{
    return separateByCommand(options.separator.empty() ? builtInCommand() : options.separator);
}

} // namespace

Service::Service(const Options &options)
    : m_folder(options.data)
    , m_database(m_folder.database(), m_folder.filesOfDatabase())
    , m_accountStore(m_database)
    , m_uploads(m_database)
    , m_jobs(m_database)
    , m_runner(m_database, m_jobs, m_uploads, m_folder, separatorOf(options),
               {options.workers, options.keepDays, options.embedded})
    , m_authorizer(m_accountStore, m_jobs)
    , m_processing(m_database, m_accountStore, m_uploads, m_jobs, m_runner, m_authorizer,
                   m_arriving, options.licence,
                   options.server.publicUrl.empty() ? ".." : options.server.publicUrl)
    , m_accounts(m_accountStore, m_jobs, m_authorizer, options.licence, options.keepDays)
    , m_status(m_database, m_folder, options.workers)
    , m_server(options.server,
               {m_processing, m_accounts, m_status, m_jobs, m_arriving, m_folder,
                options.maxUploadBytes})
    , m_log(DataFolder::logFile(options.data))
    , m_controlFile(DataFolder::controlFile(options.data), m_server.url(), options.server.statusKey)
{ }

void discardAbandoned(const std::filesystem::path &data)
{
    const DataFolder folder(data);
    Database database(folder.database(), folder.filesOfDatabase());
    UploadStore uploads(database);
    JobStore jobs(database);
    const JobRunner runner(database, jobs, uploads, folder, {},
                           {.workers = 0, .discardsUnfinished = true});
}

std::string Service::startLine()
{
    const std::string hash = m_accountStore.localSession();
    const std::optional<Account> account = m_accountStore.accountOf(hash);
    Poco::JSON::Object json;
    json.set("url", url());
    json.set("email", account ? account->email : "");
    json.set("hash", hash);
    json.set("log", utf8(m_log));
    if (!m_database.damagedFile().empty())
        json.set("recovered", utf8(m_database.damagedFile()));
    std::ostringstream line;
    json.stringify(line);
    return line.str();
}

} // namespace localservice
