// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/replies.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"
#include "localservice/http/clientaddress.h"

#include <Poco/Data/SQLite/SQLiteException.h>
#include <Poco/Net/MediaType.h>
#include <Poco/Net/NameValueCollection.h>
#include <Poco/Net/NetException.h>

#include <optional>

namespace localservice {

namespace {

constexpr const char *sessionCookie = "teko-session";
constexpr const char *internalError = "The service could not answer the request.";

struct Reply
{
    Response::HTTPStatus status;
    std::string text;
};

Reply internalErrorReply(const Request &request, const std::string &reason)
{
    log(requestPath(request) + ": " + reason);
    return {Response::HTTP_INTERNAL_SERVER_ERROR, internalError};
}

// Empty when the client has disconnected.
std::optional<Reply> attempt(const Request &request, const std::function<std::string()> &reply)
{
    try {
        return Reply{Response::HTTP_OK, reply()};
    } catch (const Refusal &refusal) {
        return Reply{Response::HTTP_OK, refusal.what()};
    } catch (const BadRequest &error) {
        return Reply{static_cast<Response::HTTPStatus>(error.status()), error.what()};
    } catch (const Poco::Net::NetException &) {
        return std::nullopt;
    } catch (const Poco::Data::SQLite::DatabaseFullException &) {
        return Reply{Response::HTTP_OK, "The service has no room left on its disk."};
    } catch (const Poco::Exception &error) {
        return internalErrorReply(request, error.displayText());
    } catch (const std::exception &error) {
        return internalErrorReply(request, error.what());
    }
}

} // namespace

std::string requestPath(const Request &request)
{
    const std::string &uri = request.getURI();
    return uri.substr(0, uri.find_first_of("?#"));
}

RequestContext contextOf(const Request &request, const RequestRules &rules)
{
    Poco::Net::NameValueCollection cookies;
    request.getCookies(cookies);
    return {clientNetwork(request.clientAddress().host(), rules.trustedProxy,
                          request.get("X-Forwarded-For", "")),
            cookies.get(sessionCookie, "")};
}

void checkType(const Request &request, const std::string &mediaType)
{
    const Poco::Net::MediaType type(request.getContentType());
    if (!type.matches(Poco::Net::MediaType(mediaType)))
        throw BadRequest("The service does not take requests of this type.",
                         Response::HTTP_UNSUPPORTED_MEDIA_TYPE);
}

void send(const Request &request, Response &response, Response::HTTPStatus status,
          const std::string &type, const std::string &body)
{
    response.setStatusAndReason(status);
    response.setContentType(type);
    response.setContentLength64(static_cast<Poco::Int64>(body.size()));
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Cache-Control", "no-store");
    std::ostream &stream = response.send();
    if (request.getMethod() != Request::HTTP_HEAD)
        stream << body;
    stream.flush();
}

void answer(const Request &request, Response &response, const std::function<std::string()> &reply)
{
    if (const std::optional<Reply> made = attempt(request, reply))
        send(request, response, made->status, plainText, made->text);
}

} // namespace localservice
