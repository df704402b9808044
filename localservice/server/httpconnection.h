// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/connections.h"

#include <Poco/Net/HTTPRequestHandlerFactory.h>
#include <Poco/Net/HTTPServerParams.h>
#include <Poco/Net/HTTPServerSession.h>
#include <Poco/Net/TCPServerConnection.h>

namespace localservice {

/// Answers the one request of a connection, on the thread that calls run(). Poco's own connection
/// closes the socket before anyone learns of it: its descriptor may then belong to another
/// connection that Connections would abort instead.
class HttpConnection final : public Poco::Net::TCPServerConnection
{
public:
    HttpConnection(const Poco::Net::StreamSocket &socket,
                   Poco::Net::HTTPServerParams::Ptr parameters,
                   Poco::Net::HTTPRequestHandlerFactory::Ptr handlers, Connections &connections);
    ~HttpConnection() override;

    void run() override;

private:
    void answer(Poco::Net::HTTPServerSession &session);

    Poco::Net::HTTPServerParams::Ptr m_parameters;
    Poco::Net::HTTPRequestHandlerFactory::Ptr m_handlers;
    Connections &m_connections;
};

} // namespace localservice
