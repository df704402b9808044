// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/connections.h"

#include <Poco/Exception.h>

namespace localservice {

namespace {

    void cut(Poco::Net::StreamSocket &socket)
    {
        try {
            socket.shutdown();
        } catch (const Poco::Exception &) {
            // The other side was quicker: the connection is gone, which is what was wanted.
            return;
        }
    }

} // namespace

Connections::Connections(std::chrono::seconds headerTime)
    : m_headerTime(headerTime)
    , m_watcher(&Connections::watch, this)
{ }

Connections::~Connections()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_watcher.join();
}

void Connections::opened(const std::string &peer, const Poco::Net::StreamSocket &socket)
{
    const std::lock_guard lock(m_mutex);
    m_entries.insert_or_assign(peer, Entry{socket, std::chrono::steady_clock::now()});
}

void Connections::headerRead(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_entries.find(peer); found != m_entries.end())
        found->second.headerRead = true;
}

void Connections::closed(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    m_entries.erase(peer);
}

void Connections::shutdownAll()
{
    const std::lock_guard lock(m_mutex);
    for (auto &[peer, entry] : m_entries)
        cut(entry.socket);
}

void Connections::watch()
{
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, std::chrono::seconds(1), [this] { return m_stopping; })) {
        const auto latest = std::chrono::steady_clock::now() - m_headerTime;
        for (auto &[peer, entry] : m_entries) {
            if (!entry.headerRead && entry.since < latest)
                cut(entry.socket);
        }
    }
}

} // namespace localservice
