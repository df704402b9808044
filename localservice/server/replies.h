// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/requestcontext.h"
#include "localservice/server/clientconnection.h"

#include <Poco/Net/HTTPServerRequest.h>
#include <Poco/Net/HTTPServerResponse.h>

#include <functional>

namespace localservice {

using Request = Poco::Net::HTTPServerRequest;
using Response = Poco::Net::HTTPServerResponse;

inline constexpr const char *plainText = "text/plain; charset=utf-8";

/// The path of a request's URI, without the query.
[[nodiscard]] std::string requestPath(const Request &request);

/// The client of a request.
[[nodiscard]] RequestContext contextOf(const Request &request, const RequestRules &rules);

/// Throws BadRequest with status 415 unless the request's body is of the media type.
void checkType(const Request &request, const std::string &mediaType);

/// Sends a whole reply (to a HEAD request only its header).
void send(const Request &request, Response &response, Response::HTTPStatus status,
          const std::string &type, const std::string &body);

/// Answers a request with the text that `reply` returns, or with why it does not. A refusal is a
/// normal answer: clients show its text only when the status is 200.
void answer(const Request &request, Response &response, const std::function<std::string()> &reply);

} // namespace localservice
