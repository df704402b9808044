// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/resulthandler.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace localservice {

namespace {

constexpr std::size_t blockBytes = 65536;

} // namespace

void ResultHandler::handleRequest(Request &request, Response &response)
{
    const std::optional<Result> result = resultAt(requestPath(request));
    std::error_code missing;
    const auto bytes = result ? std::filesystem::file_size(result->file, missing) : 0;
    if (!result || missing) {
        send(request, response, Response::HTTP_NOT_FOUND, plainText, "Not found.");
        return;
    }
    if (!m_connection.beginTransfer(contextOf(request, m_rules).address, result->account)) {
        send(request, response, Response::HTTP_SERVICE_UNAVAILABLE, plainText,
             "The service has too many transfers under way. Please try again.");
        return;
    }
    response.setContentType("audio/wav");
    response.setContentLength64(static_cast<Poco::Int64>(bytes));
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Cache-Control", "private, no-store");
    if (request.getMethod() == Request::HTTP_HEAD)
        response.send();
    else
        sendFile(result->file, response);
}

void ResultHandler::sendFile(const std::filesystem::path &file, Response &response)
{
    std::ifstream source(file, std::ios::binary);
    std::ostream &target = response.send();
    std::vector<char> block(blockBytes);
    while (source && target) {
        source.read(block.data(), static_cast<std::streamsize>(block.size()));
        target.write(block.data(), source.gcount());
        m_connection.transferred(static_cast<std::size_t>(source.gcount()));
    }
    target.flush();
}

std::optional<ResultHandler::Result> ResultHandler::resultAt(const std::string &path) const
{
    const std::string rest = path.substr(std::string_view("/results/").size());
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    const std::optional<Job> job = m_backend.jobs.findByToken(rest.substr(0, slash));
    if (!job || job->state != JobState::Ready)
        return std::nullopt;
    const std::string name = rest.substr(slash);
    if (name == "/" + job->instrument + ".wav")
        return Result{m_backend.folder.mainResult(job->token), job->account};
    if (name == "/mix-without-" + job->instrument + ".wav")
        return Result{m_backend.folder.mixResult(job->token), job->account};
    return std::nullopt;
}

} // namespace localservice
