// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/controlfile.h"

#include "localservice/base/log.h"
#include "localservice/base/paths.h"
#include "localservice/server/tls.h"

#include <Poco/Net/HTTPRequest.h>
#include <Poco/Net/HTTPResponse.h>
#include <Poco/Net/NetException.h>
#include <Poco/StreamCopier.h>
#include <Poco/URI.h>

#include <fstream>
#include <stdexcept>

namespace localservice {

namespace {

constexpr std::size_t fileBytes = 256;

// A wildcard address cannot be connected to.
Poco::Net::SocketAddress addressOf(const Poco::URI &url)
{
    using Poco::Net::IPAddress;
    const IPAddress host(url.getHost());
    return {host.isWildcard() ? IPAddress(host.family() == IPAddress::IPv4 ? "127.0.0.1" : "::1")
                              : host,
            url.getPort()};
}

std::string requestStatus(const std::string &url, const std::string &key)
{
    const Poco::URI address(url);
    const auto session = address.getScheme() == "https"
        ? makeTlsClient(addressOf(address))
        : std::make_unique<Poco::Net::HTTPClientSession>(addressOf(address));
    Poco::Net::HTTPRequest request(Poco::Net::HTTPRequest::HTTP_GET, "/status",
                                   Poco::Net::HTTPRequest::HTTP_1_1);
    request.set("Authorization", "Bearer " + key);
    session->sendRequest(request);
    Poco::Net::HTTPResponse response;
    std::string text;
    Poco::StreamCopier::copyToString(session->receiveResponse(response), text);
    if (response.getStatus() != Poco::Net::HTTPResponse::HTTP_OK)
        throw std::runtime_error("The service does not answer: " + response.getReason());
    return text;
}

// The file keeps its size from run to run: a full disk has no room for a new one.
bool overwrite(const std::filesystem::path &file, std::string text)
{
    text.resize(fileBytes, ' ');
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    if (!stream.is_open())
        stream.open(file, std::ios::out | std::ios::binary);
    stream << text;
    stream.close();
    return !stream.fail();
}

} // namespace

ControlFile::ControlFile(std::filesystem::path file, const std::string &url, const std::string &key)
    : m_file(std::move(file))
{
    if (!overwrite(m_file, url + "\n" + key + "\n"))
        log("Could not write " + utf8(m_file) + ": \"teko-service status\" will not work");
    std::error_code ignored;
    std::filesystem::permissions(
        m_file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, ignored);
}

ControlFile::~ControlFile()
{
    (void)overwrite(m_file, "");
}

std::string fetchStatus(const std::filesystem::path &controlFile)
{
    const std::string notRunning =
        "No service is running on " + utf8(controlFile.parent_path()) + ".";
    std::ifstream stream(controlFile);
    std::error_code error;
    if (!stream.is_open() && (std::filesystem::exists(controlFile, error) || error))
        throw std::runtime_error("You may not read " + utf8(controlFile) + ".");
    std::string url;
    std::string key;
    if (!(stream >> url >> key))
        throw std::runtime_error(notRunning);
    try {
        return requestStatus(url, key);
    } catch (const Poco::Net::ConnectionRefusedException &) {
        // The service was killed.
        throw std::runtime_error(notRunning);
    }
}

} // namespace localservice
