// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/backend.h"
#include "localservice/server/connections.h"

#include <Poco/Net/HTTPRequestHandlerFactory.h>

namespace localservice {

/// Returns every request the handler of its path.
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
