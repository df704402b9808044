// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/resulthandler.h"

#include "localservice/base/paths.h"

#include <algorithm>

namespace localservice {

void ResultHandler::handleRequest(Request &request, Response &response)
{
    const std::optional<std::filesystem::path> file = fileOf(pathOf(request));
    std::error_code missing;
    if (!file || !std::filesystem::is_regular_file(*file, missing)) {
        send(request, response, Response::HTTP_NOT_FOUND, plainText, "Not found.");
        return;
    }
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Cache-Control", "private, no-store");
    response.sendFile(utf8(*file), "audio/wav");
}

std::optional<std::filesystem::path> ResultHandler::fileOf(const std::string &path) const
{
    const std::string rest = path.substr(std::string_view("/results/").size());
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    const std::optional<Job> job = m_backend.jobs.findByToken(rest.substr(0, slash));
    if (!job || job->state != JobState::Ready)
        return std::nullopt;
    const std::string name = rest.substr(slash);
    if (name == "/" + job->instrument + ".wav")
        return m_backend.folder.mainResult(job->token);
    if (name == "/mix-without-" + job->instrument + ".wav")
        return m_backend.folder.mixResult(job->token);
    return std::nullopt;
}

} // namespace localservice
