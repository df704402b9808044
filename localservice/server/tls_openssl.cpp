// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/tls.h"

#include "localservice/base/paths.h"

#include <Poco/Net/Context.h>
#include <Poco/Net/HTTPSClientSession.h>
#include <Poco/Net/SecureServerSocket.h>

namespace localservice {

Poco::Net::ServerSocket makeTlsSocket(const std::filesystem::path &certificate,
                                      const std::filesystem::path &key)
{
    using Poco::Net::Context;
    Context::Params parameters;
    parameters.certificateFile = utf8(certificate);
    parameters.privateKeyFile = utf8(key);
    parameters.verificationMode = Context::VERIFY_NONE; // of clients: they have no certificates
    Context::Ptr context = new Context(Context::TLS_SERVER_USE, parameters);
    if (SSL_CTX_check_private_key(context->sslContext()) != 1)
        throw Poco::InvalidArgumentException("The key in " + parameters.privateKeyFile
                                             + " does not belong to the certificate in "
                                             + parameters.certificateFile);
    context->requireMinimumProtocol(Context::PROTO_TLSV1_2);
    context->enableSessionCache(false);
    // Sockets are handles: the implementation behind this one still speaks TLS.
    const Poco::Net::SecureServerSocket socket(context);
    return {static_cast<const Poco::Net::Socket &>(socket)};
}

std::unique_ptr<Poco::Net::HTTPClientSession> makeTlsClient(const Poco::Net::SocketAddress &address)
{
    using Poco::Net::Context;
    const Context::Ptr context = new Context(Context::TLS_CLIENT_USE, "", Context::VERIFY_NONE);
    return std::make_unique<Poco::Net::HTTPSClientSession>(address.host().toString(),
                                                           address.port(), context);
}

} // namespace localservice
