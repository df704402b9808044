// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/httpconnection.h"

#include "localservice/base/log.h"

#include <Poco/Exception.h>
#include <Poco/Net/HTTPRequestHandler.h>
#include <Poco/Net/HTTPServerRequestImpl.h>
#include <Poco/Net/HTTPServerResponseImpl.h>
#include <Poco/Net/NetException.h>

#include <memory>
#include <utility>

namespace localservice {

namespace {

using Poco::Net::HTTPResponse;

void refuse(Poco::Net::HTTPServerSession &session)
{
    Poco::Net::HTTPServerResponseImpl response(session);
    response.setVersion(HTTPResponse::HTTP_1_1);
    response.setStatusAndReason(HTTPResponse::HTTP_BAD_REQUEST);
    response.setKeepAlive(false);
    response.setContentLength(0);
    response.send();
}

} // namespace

HttpConnection::HttpConnection(const Poco::Net::StreamSocket &socket,
                               Poco::Net::HTTPServerParams::Ptr parameters,
                               Poco::Net::HTTPRequestHandlerFactory::Ptr handlers,
                               Connections &connections)
    : TCPServerConnection(socket)
    , m_parameters(std::move(parameters))
    , m_handlers(std::move(handlers))
    , m_connections(connections)
{
    this->socket().setSendTimeout(m_parameters->getTimeout());
}

HttpConnection::~HttpConnection()
{
    m_connections.closed(socket().impl());
}

void HttpConnection::run()
{
    Poco::Net::HTTPServerSession session(socket(), m_parameters);
    try {
        try {
            answer(session);
        } catch (const Poco::Net::MessageException &) {
            refuse(session);
        } catch (const Poco::SyntaxException &) {
            refuse(session);
        }
    } catch (const Poco::Net::NetException &) {
        // The client has disconnected, or was too slow.
    } catch (const Poco::Exception &error) {
        log("a connection ended: " + error.displayText());
    } catch (const std::exception &error) {
        log(std::string("a connection ended: ") + error.what());
    }
    m_connections.closed(socket().impl());
}

void HttpConnection::answer(Poco::Net::HTTPServerSession &session)
{
    Poco::Net::HTTPServerResponseImpl response(session);
    Poco::Net::HTTPServerRequestImpl request(response, session, m_parameters.get());
    response.setVersion(request.getVersion());
    response.setKeepAlive(false);
    const std::unique_ptr<Poco::Net::HTTPRequestHandler> handler(
        m_handlers->createRequestHandler(request));
    if (request.getExpectContinue())
        response.sendContinue();
    handler->handleRequest(request, response);
}

} // namespace localservice
