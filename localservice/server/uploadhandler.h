// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/backend.h"
#include "localservice/server/replies.h"

#include <Poco/Net/HTTPRequestHandler.h>

namespace localservice {

/// Takes an uploaded file with its form, streaming it to the disk. Only a client with a session
/// gets as far as that.
class UploadHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    UploadHandler(Backend &backend, const RequestRules &rules, const ClientConnection &connection)
        : m_backend(backend)
        , m_rules(rules)
        , m_connection(connection)
    { }

    void handleRequest(Request &request, Response &response) override;

private:
    Backend &m_backend;
    const RequestRules &m_rules;
    ClientConnection m_connection;
};

} // namespace localservice
