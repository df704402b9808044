// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/handlerfactory.h"

#include "localservice/base/secrets.h"
#include "localservice/server/formhandler.h"
#include "localservice/server/pages.h"
#include "localservice/server/resulthandler.h"
#include "localservice/server/uploadhandler.h"

#include <Poco/String.h>

#include <algorithm>

namespace localservice {

namespace {

constexpr const char *uploadPath = "/teko-server/proceed.php";

// Sends a fixed reply.
class FixedHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    FixedHandler(Response::HTTPStatus status, std::string type, std::string body)
        : m_status(status)
        , m_type(std::move(type))
        , m_body(std::move(body))
    { }

    void handleRequest(Request &request, Response &response) override
    {
        if (m_status == Response::HTTP_NO_CONTENT) {
            response.setStatusAndReason(m_status);
            response.send();
            return;
        }
        send(request, response, m_status, m_type, m_body);
    }

private:
    Response::HTTPStatus m_status;
    std::string m_type;
    std::string m_body;
};

Poco::Net::HTTPRequestHandler *refuse(Response::HTTPStatus status, const std::string &sentence)
{
    return new FixedHandler(status, plainText, sentence);
}

bool isRead(const Request &request)
{
    return request.getMethod() == Request::HTTP_GET || request.getMethod() == Request::HTTP_HEAD;
}

bool isReadPath(const std::string &path)
{
    return path == "/healthz" || path == "/status" || path == "/generate_204"
        || path.rfind("/results/", 0) == 0 || pageAt(path).has_value();
}

// What stands before this service may have looked at the other one.
bool isRepeated(const Request &request, const std::string &header)
{
    return std::count_if(
               request.begin(), request.end(),
               [&header](const auto &item) { return Poco::icompare(item.first, header) == 0; })
        > 1;
}

} // namespace

Poco::Net::HTTPRequestHandler *HandlerFactory::createRequestHandler(const Request &request)
{
    for (const char *header : {"Host", "Origin", "Content-Length"}) {
        if (isRepeated(request, header))
            return refuse(Response::HTTP_BAD_REQUEST, "Repeated header.");
    }
    const std::string host = request.get("Host", "");
    if (!m_rules.hosts.acceptsHost(host))
        return refuse(Response::HTTP_FORBIDDEN, "Host header not accepted.");
    if (!m_rules.hosts.acceptsOrigin(request.get("Origin", ""), host))
        return refuse(Response::HTTP_FORBIDDEN, "This service does not answer web pages.");
    const std::string path = requestPath(request);
    const FormCall *const call = formCallOf(path);
    const bool isUpload = path == uploadPath;
    if (call != nullptr || isUpload) {
        if (request.getMethod() != Request::HTTP_POST)
            return refuse(Response::HTTP_METHOD_NOT_ALLOWED, "Not allowed.");
        if (isUpload)
            return new UploadHandler(m_backend, m_rules, m_connection);
        return new FormHandler(m_backend, m_rules, m_connection, *call);
    }
    if (isRead(request))
        return handlerOfGet(request, path);
    return isReadPath(path) ? refuse(Response::HTTP_METHOD_NOT_ALLOWED, "Not allowed.")
                            : refuse(Response::HTTP_NOT_FOUND, "Not found.");
}

bool HandlerFactory::maySeeStatus(const Request &request) const
{
    return !m_rules.statusKey.empty()
        && sameSecret(request.get("Authorization", ""), "Bearer " + m_rules.statusKey);
}

Poco::Net::HTTPRequestHandler *HandlerFactory::handlerOfHealth()
{
    const std::string problem = m_backend.status.problem();
    if (problem.empty())
        return new FixedHandler(Response::HTTP_OK, plainText, "ok\n");
    return refuse(Response::HTTP_SERVICE_UNAVAILABLE, problem + "\n");
}

Poco::Net::HTTPRequestHandler *HandlerFactory::handlerOfGet(const Request &request,
                                                            const std::string &path)
{
    // An aborted connection needs no answer.
    (void)m_connection.requestRead();
    if (path == "/healthz")
        return handlerOfHealth();
    if (path == "/status" && maySeeStatus(request))
        return new FixedHandler(Response::HTTP_OK, plainText, m_backend.status.text());
    if (path == "/generate_204")
        return new FixedHandler(Response::HTTP_NO_CONTENT, "", "");
    if (path.rfind("/results/", 0) == 0)
        return new ResultHandler(m_backend, m_rules, m_connection);
    if (const std::optional<std::string> page = pageAt(path))
        return new FixedHandler(Response::HTTP_OK, "text/html; charset=utf-8", *page);
    return refuse(Response::HTTP_NOT_FOUND, "Not found.");
}

} // namespace localservice
