// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/replies.h"

#include <Poco/Net/HTTPRequestHandler.h>

#include <filesystem>
#include <optional>

namespace localservice {

/// Sends the result files of finished jobs.
class ResultHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    explicit ResultHandler(Backend &backend)
        : m_backend(backend)
    { }

    void handleRequest(Request &request, Response &response) override;

private:
    /// The file behind "/results/TOKEN/NAME.wav", with the names that download.php returns.
    [[nodiscard]] std::optional<std::filesystem::path> fileOf(const std::string &path) const;

    Backend &m_backend;
};

} // namespace localservice
