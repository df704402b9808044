// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/httpserver.h"

#include <Poco/Net/HTTPServerConnection.h>
#include <Poco/Net/HTTPServerParams.h>
#include <Poco/Net/NetException.h>
#include <Poco/Net/TCPServerConnectionFactory.h>

#include <utility>

namespace localservice {

namespace {

using Poco::Net::HTTPServerParams;
using Poco::Net::StreamSocket;

constexpr int maxThreads = 32;
constexpr int maxWaiting = 64;
// How long the other side may say nothing, or take nothing, in the middle of a request.
constexpr int silenceSeconds = 30;

class Connection final : public Poco::Net::HTTPServerConnection
{
public:
    Connection(const StreamSocket &socket, HTTPServerParams::Ptr parameters,
               Poco::Net::HTTPRequestHandlerFactory::Ptr handlers, Connections &connections)
        : HTTPServerConnection(socket, std::move(parameters), std::move(handlers))
        , m_peer(socket.peerAddress().toString())
        , m_connections(connections)
    {
        this->socket().setSendTimeout(Poco::Timespan(silenceSeconds, 0));
        m_connections.opened(m_peer, socket);
    }

    ~Connection() override { m_connections.closed(m_peer); }

private:
    std::string m_peer;
    Connections &m_connections;
};

class ConnectionFactory final : public Poco::Net::TCPServerConnectionFactory
{
public:
    ConnectionFactory(HTTPServerParams::Ptr parameters, Backend &backend, Connections &connections)
        : m_parameters(std::move(parameters))
        , m_handlers(new HandlerFactory(backend, connections))
        , m_connections(connections)
    { }

    Poco::Net::TCPServerConnection *createConnection(const StreamSocket &socket) override
    {
        return new Connection(socket, m_parameters, m_handlers, m_connections);
    }

private:
    HTTPServerParams::Ptr m_parameters;
    Poco::Net::HTTPRequestHandlerFactory::Ptr m_handlers;
    Connections &m_connections;
};

// One request a connection: a kept-alive one that the service closes in the wrong moment makes
// clients send their request twice.
HTTPServerParams::Ptr parameters()
{
    HTTPServerParams::Ptr parameters = new HTTPServerParams;
    parameters->setKeepAlive(false);
    parameters->setTimeout(Poco::Timespan(silenceSeconds, 0));
    parameters->setMaxThreads(maxThreads);
    parameters->setMaxQueued(maxWaiting);
    return parameters;
}

} // namespace

HttpServer::HttpServer(const std::string &host, std::uint16_t port, Backend backend,
                       std::chrono::milliseconds requestTime)
    : m_backend(std::move(backend))
    , m_connections(requestTime)
    , m_threads(2, maxThreads)
{
    Poco::Net::ServerSocket socket;
    socket.bind(Poco::Net::SocketAddress(host, port), true, false);
    socket.listen(maxWaiting);
    m_backend.fallbackHost = socket.address().toString();
    const HTTPServerParams::Ptr shared = parameters();
    m_server = std::make_unique<Poco::Net::TCPServer>(
        new ConnectionFactory(shared, m_backend, m_connections), m_threads, socket, shared);
    m_server->start();
}

HttpServer::~HttpServer()
{
    m_server->stop();
    m_connections.shutdownAll();
    m_threads.joinAll();
}

} // namespace localservice
