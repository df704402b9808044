// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/tls.h"

#include <Poco/Exception.h>

namespace localservice {

Poco::Net::ServerSocket makeTlsSocket(const std::filesystem::path &, const std::filesystem::path &)
{
    throw Poco::NotImplementedException("This program was built without TLS");
}

std::unique_ptr<Poco::Net::HTTPClientSession> makeTlsClient(const Poco::Net::SocketAddress &)
{
    throw Poco::NotImplementedException("This program was built without TLS");
}

} // namespace localservice
