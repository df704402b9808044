// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/backend.h"
#include "localservice/server/replies.h"

#include <Poco/Net/HTTPRequestHandler.h>

#include <filesystem>
#include <optional>

namespace localservice {

/// Sends the result files of finished jobs, block by block.
class ResultHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    ResultHandler(Backend &backend, const RequestRules &rules, const ClientConnection &connection)
        : m_backend(backend)
        , m_rules(rules)
        , m_connection(connection)
    { }

    void handleRequest(Request &request, Response &response) override;

private:
    struct Result
    {
        std::filesystem::path file;
        std::int64_t account = 0;
    };
    /// The file for "/results/TOKEN/NAME.wav", with the names that download.php returns.
    [[nodiscard]] std::optional<Result> resultAt(const std::string &path) const;

    void sendFile(const std::filesystem::path &file, Response &response);

    Backend &m_backend;
    const RequestRules &m_rules;
    ClientConnection m_connection;
};

} // namespace localservice
