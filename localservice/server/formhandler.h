// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/backend.h"
#include "localservice/server/clientconnection.h"
#include "localservice/server/replies.h"

#include <Poco/Net/HTTPRequestHandler.h>

#include <functional>

namespace localservice {

/// Returns the text of the reply to a form, or throws as answer() allows.
using FormCall = std::function<std::string(Backend &, const Fields &, const RequestContext &)>;

/// The call of a form's path; null for any other path.
[[nodiscard]] const FormCall *formCallOf(const std::string &path);

/// Reads a form and answers it.
class FormHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    FormHandler(Backend &backend, const RequestRules &rules, const ClientConnection &connection,
                const FormCall &call)
        : m_backend(backend)
        , m_rules(rules)
        , m_connection(connection)
        , m_call(call)
    { }

    void handleRequest(Request &request, Response &response) override;

private:
    Backend &m_backend;
    const RequestRules &m_rules;
    ClientConnection m_connection;
    const FormCall &m_call;
};

} // namespace localservice
