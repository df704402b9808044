// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/http/hostpolicy.h"
#include "localservice/server/connections.h"

namespace localservice {

/// The connection of one request, as its handler sees it. See Connections.
class ClientConnection final
{
public:
    ClientConnection(Connections &connections, Connections::Id id)
        : m_connections(connections)
        , m_id(id)
    { }

    [[nodiscard]] bool requestRead() { return m_connections.requestRead(m_id); }
    [[nodiscard]] bool beginTransfer(const std::string &client, std::int64_t account)
    {
        return m_connections.beginTransfer(m_id, client, account);
    }
    void transferred(std::size_t bytes) { m_connections.transferred(m_id, bytes); }
    void beginDrain() { m_connections.beginDrain(m_id); }

private:
    Connections &m_connections;
    Connections::Id m_id;
};

/// Which requests a server answers, and for whom it takes them.
struct RequestRules
{
    HostPolicy hosts;
    std::string trustedProxy; ///< see clientNetwork()
    std::string statusKey; ///< see ServerSettings
};

} // namespace localservice
