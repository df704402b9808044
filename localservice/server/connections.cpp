// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/connections.h"

#include <Poco/Exception.h>

#include <algorithm>

namespace localservice {

Connections::Connections(std::chrono::milliseconds time)
    : m_timeout(time)
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

bool Connections::requestRead(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(peer);
    if (found == m_entries.end() || found->second.state == State::Aborted)
        return false;
    found->second.state = State::Read;
    return true;
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
        abort(entry);
}

void Connections::abort(Entry &entry)
{
    entry.state = State::Aborted;
    try {
        entry.socket.shutdown();
    } catch (const Poco::Exception &) {
        // The peer has already closed the connection.
        return;
    }
}

void Connections::watch()
{
    const auto pause = std::min<std::chrono::milliseconds>(m_timeout, std::chrono::seconds(1));
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, pause, [this] { return m_stopping; })) {
        const auto latest = std::chrono::steady_clock::now() - m_timeout;
        for (auto &[peer, entry] : m_entries) {
            if (entry.state == State::Awaited && entry.since < latest)
                abort(entry);
        }
    }
}

} // namespace localservice
