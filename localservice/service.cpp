// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/service.h"

#include "localservice/jobs/commandseparator.h"

#include <Poco/JSON/Object.h>

#include <sstream>

namespace localservice {

namespace {

SeparateFunction separatorOf(const Options &options)
{
    return options.separator.empty() ? SeparateFunction(separate)
                                     : separateByCommand(options.separator);
}

} // namespace

Service::Service(const Options &options)
    : m_folder(options.data)
    , m_database(m_folder.database())
    , m_accountStore(m_database)
    , m_uploads(m_database)
    , m_jobs(m_database)
    , m_runner(m_jobs, m_uploads, m_folder, separatorOf(options), options.workers, options.keepDays)
    , m_authorizer(m_accountStore, m_jobs)
    , m_processing(m_database, m_accountStore, m_uploads, m_jobs, m_runner, m_authorizer,
                   m_arriving, options.licence,
                   options.server.publicUrl.empty() ? ".." : options.server.publicUrl)
    , m_accounts(m_accountStore, m_jobs, m_authorizer, options.licence, options.keepDays)
    , m_server(options.server,
               {m_processing, m_accounts, m_jobs, m_arriving, m_folder, options.maxUploadBytes})
{ }

std::string Service::startLine()
{
    const std::string hash = m_accountStore.localSession();
    const std::optional<Account> account = m_accountStore.accountOf(hash);
    Poco::JSON::Object json;
    json.set("url", url());
    json.set("email", account ? account->email : "");
    json.set("hash", hash);
    std::ostringstream line;
    json.stringify(line);
    return line.str();
}

} // namespace localservice
