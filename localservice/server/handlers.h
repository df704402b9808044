// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/accounts.h"
#include "localservice/api/processing.h"
#include "localservice/server/connections.h"

#include <Poco/Net/HTTPRequestHandlerFactory.h>

namespace localservice {

/// What the handlers of the requests work with.
struct Backend
{
    Processing &processing;
    Accounts &accounts;
    JobStore &jobs;
    ArrivingFiles &arriving;
    const DataFolder &folder;
    std::uint64_t mostUploadBytes;
    std::string
        fallbackHost; ///< "host:port", for clients that do not say how they address the service
};

/// Gives every request the handler of its path.
class HandlerFactory final : public Poco::Net::HTTPRequestHandlerFactory
{
public:
    HandlerFactory(Backend &backend, Connections &connections)
        : m_backend(backend)
        , m_connections(connections)
    { }

    Poco::Net::HTTPRequestHandler *
    createRequestHandler(const Poco::Net::HTTPServerRequest &request) override;

private:
    Backend &m_backend;
    Connections &m_connections;
};

} // namespace localservice
