// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/httpserver.h"

#include "localservice/platform/ports.h"
#include "localservice/server/httpconnection.h"
#include "localservice/server/tls.h"

#include <Poco/Environment.h>
#include <Poco/Net/HTTPServerParams.h>
#include <Poco/Net/TCPServerConnectionFactory.h>

#include <stdexcept>
#include <utility>

namespace localservice {

namespace {

using Poco::Net::HTTPServerParams;
using Poco::Net::StreamSocket;

// Besides the limits of connections, which abort earlier: for one read or write.
constexpr int silenceSeconds = 60;
constexpr int maxThreads = 512;
constexpr int listenBacklog = 128;
constexpr int minThreads = 2;

class ConnectionFactory final : public Poco::Net::TCPServerConnectionFactory
{
public:
    ConnectionFactory(HTTPServerParams::Ptr parameters, Backend &backend, const RequestRules &rules,
                      Connections &connections)
        : m_parameters(std::move(parameters))
        , m_backend(backend)
        , m_rules(rules)
        , m_connections(connections)
    { }

    Poco::Net::TCPServerConnection *createConnection(const StreamSocket &socket) override
    {
        const ClientConnection client{m_connections, socket.impl()};
        return new HttpConnection(socket, m_parameters,
                                  new HandlerFactory(m_backend, m_rules, client), m_connections);
    }

private:
    HTTPServerParams::Ptr m_parameters;
    Backend &m_backend;
    const RequestRules &m_rules;
    Connections &m_connections;
};

class ConnectionFilter final : public Poco::Net::TCPServerConnectionFilter
{
public:
    explicit ConnectionFilter(Connections &connections)
        : m_connections(connections)
    { }

    bool accept(const StreamSocket &socket) override { return m_connections.open(socket); }

private:
    Connections &m_connections;
};

// One request a connection: a kept-alive one that the service closes at the wrong moment makes
// clients send their request twice.
HTTPServerParams::Ptr parameters()
{
    HTTPServerParams::Ptr parameters = new HTTPServerParams;
    parameters->setKeepAlive(false);
    parameters->setTimeout(Poco::Timespan(silenceSeconds, 0));
    parameters->setMaxThreads(maxThreads);
    parameters->setMaxQueued(maxThreads);
    return parameters;
}

Poco::Net::ServerSocket listenOn(const ServerSettings &settings)
{
    Poco::Net::ServerSocket socket = settings.certificate.empty()
        ? Poco::Net::ServerSocket()
        : makeTlsSocket(settings.certificate, settings.key);
    const Poco::Net::SocketAddress address(settings.host, settings.port);
    try {
        socket.bind(address, canReusePorts, false);
        socket.listen(listenBacklog);
    } catch (const Poco::IOException &error) {
        // Windows says of a port in use that permission is denied.
        throw std::runtime_error("Cannot listen on " + address.toString()
                                 + ", where another program may be listening. ("
                                 + error.displayText() + ")");
    }
    return socket;
}

} // namespace

HttpServer::HttpServer(const ServerSettings &settings, const Backend &backend)
    : m_backend(backend)
    , m_connections(settings.limits, settings.trustedProxy)
    , m_threads(minThreads, maxThreads)
{
    const Poco::Net::ServerSocket socket = listenOn(settings);
    const Poco::Net::SocketAddress address = socket.address();
    const bool byTls = !settings.certificate.empty();
    const bool byLoopbackOnly = address.host().isLoopback();
    m_url = (byTls ? "https://" : "http://") + address.toString();
    m_isOpenWithoutTls = !byTls && !byLoopbackOnly;
    m_rules = std::make_unique<RequestRules>(
        RequestRules{HostPolicy({byLoopbackOnly, byTls, address.port(), settings.publicUrl,
                                 Poco::Environment::nodeName()}),
                     settings.trustedProxy, settings.statusKey});
    const HTTPServerParams::Ptr shared = parameters();
    m_server = std::make_unique<Poco::Net::TCPServer>(
        new ConnectionFactory(shared, m_backend, *m_rules, m_connections), m_threads, socket,
        shared);
    m_server->setConnectionFilter(new ConnectionFilter(m_connections));
    m_server->start();
}

HttpServer::~HttpServer()
{
    m_server->stop();
    m_connections.abortAll();
    m_threads.joinAll();
}

} // namespace localservice
