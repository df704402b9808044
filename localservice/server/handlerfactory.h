// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/backend.h"
#include "localservice/server/clientconnection.h"

#include <Poco/Net/HTTPRequestHandlerFactory.h>

namespace localservice {

/// Creates the handler of the request of one connection, by its method and path.
class HandlerFactory final : public Poco::Net::HTTPRequestHandlerFactory
{
public:
    HandlerFactory(Backend &backend, const RequestRules &rules, const ClientConnection &connection)
        : m_backend(backend)
        , m_rules(rules)
        , m_connection(connection)
    { }

    Poco::Net::HTTPRequestHandler *
    createRequestHandler(const Poco::Net::HTTPServerRequest &request) override;

private:
    Poco::Net::HTTPRequestHandler *handlerOfGet(const Poco::Net::HTTPServerRequest &request,
                                                const std::string &path);
    Poco::Net::HTTPRequestHandler *handlerOfHealth();
    [[nodiscard]] bool maySeeStatus(const Poco::Net::HTTPServerRequest &request) const;

    Backend &m_backend;
    const RequestRules &m_rules;
    ClientConnection m_connection;
};

} // namespace localservice
