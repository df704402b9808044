// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/options.h"
#include "localservice/server/controlfile.h"
#include "localservice/server/httpserver.h"

namespace localservice {

/// The whole service; runs as long as the object exists.
class Service final
{
public:
    /// Opens the data folder, resumes interrupted jobs and listens. Throws DatabaseBusy
    /// when another service uses the folder, and other exceptions when it cannot start.
    explicit Service(const Options &options);

    /// Its base address: "http://host:port" or "https://host:port".
    [[nodiscard]] const std::string &url() const { return m_server.url(); }
    /// Whether other computers on the network can read what is sent.
    [[nodiscard]] bool isOpenToNetworkWithoutTls() const
    {
        return m_server.isOpenToNetworkWithoutTls();
    }
    /// One line of JSON for the program that this service is embedded in: "url", "email" and "hash"
    /// of the local account, which is made at the first call; "log", the file that it may find
    /// messages in; "recovered", when a damaged database was found, is its new file name.
    [[nodiscard]] std::string startLine();

private:
    DataFolder m_folder;
    Database m_database;
    AccountStore m_accountStore;
    UploadStore m_uploads;
    JobStore m_jobs;
    JobRunner m_runner;
    Authorizer m_authorizer;
    ArrivingFiles m_arriving;
    Processing m_processing;
    Accounts m_accounts;
    ServiceStatus m_status;
    HttpServer m_server;
    const std::filesystem::path m_log;
    ControlFile m_controlFile;
};

/// Deletes what a client of an embedded service that is no longer running has left in its data
/// folder: waiting jobs, uploads and unfinished results. Throws DatabaseBusy when it is running.
void discardAbandoned(const std::filesystem::path &data);

} // namespace localservice
