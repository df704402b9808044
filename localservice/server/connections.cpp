// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/connections.h"

#include "localservice/http/clientaddress.h"

#include <Poco/Exception.h>
#include <Poco/Net/SocketImpl.h>

#include <algorithm>
#include <utility>

namespace localservice {

namespace {

// At most so many aborted connections, whose threads are about to end, in addition to the limit.
constexpr std::size_t maxAborted = 100;

// So many accounts can fill all transfers.
constexpr std::size_t accountsAtATime = 4;

// What one address may have of a limit.
constexpr std::size_t shareOf(std::size_t limit)
{
    return limit - limit / 4;
}

} // namespace

Connections::Connections(const ConnectionLimits &limits, std::string trustedProxy)
    : m_limits(limits)
    , m_trustedProxy(std::move(trustedProxy))
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

bool Connections::open(const Poco::Net::StreamSocket &socket)
{
    const Poco::Net::IPAddress peer = unmapped(socket.peerAddress().host());
    const std::string address = peer.toString() == m_trustedProxy ? "" : networkOf(peer);
    const std::lock_guard lock(m_mutex);
    if (m_entries.size() >= m_limits.connections + maxAborted || !makeRoom(address))
        return false;
    const Time now = std::chrono::steady_clock::now();
    m_entries.emplace(
        socket.impl(),
        Entry{socket, address, State::Reading, now, now + m_limits.requestTimeout, 0, 0, {}});
    return true;
}

bool Connections::makeRoom(const std::string &address)
{
    if (!address.empty() && count(address) >= shareOf(m_limits.connections))
        return abortOldest(address);
    return count({}) < m_limits.connections || abortOldest({});
}

// Of an address, or of all for "".
std::size_t Connections::count(const std::string &address) const
{
    return static_cast<std::size_t>(
        std::count_if(m_entries.begin(), m_entries.end(), [&](const auto &item) {
            return item.second.state != State::Aborted
                && (address.empty() || item.second.address == address);
        }));
}

Connections::Transfers Connections::countTransfers(const std::string &address,
                                                   std::int64_t account) const
{
    Transfers count;
    for (const auto &[id, entry] : m_entries) {
        if (entry.state != State::Transferring)
            continue;
        ++count.all;
        count.ofAddress += entry.address == address ? 1 : 0;
        count.ofAccount += entry.account == account ? 1 : 0;
    }
    return count;
}

Connections::Entry *Connections::oldest(const std::string &address,
                                        std::initializer_list<State> states)
{
    Entry *oldest = nullptr;
    for (auto &[id, entry] : m_entries) {
        if (std::find(states.begin(), states.end(), entry.state) != states.end()
            && (address.empty() || entry.address == address)
            && (oldest == nullptr || entry.opened < oldest->opened))
            oldest = &entry;
    }
    return oldest;
}

bool Connections::abortOldest(const std::string &address)
{
    Entry *entry = oldest(address, {State::Reading, State::Draining});
    if (entry == nullptr)
        entry = oldest(address, {State::Replying});
    if (entry != nullptr)
        abort(*entry);
    return entry != nullptr;
}

bool Connections::requestRead(Id id)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(id);
    if (found == m_entries.end() || found->second.state == State::Aborted)
        return false;
    found->second.state = State::Replying;
    found->second.deadline = std::chrono::steady_clock::now() + m_limits.replyTimeout;
    return true;
}

bool Connections::beginTransfer(Id id, const std::string &client, std::int64_t account)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(id);
    if (found == m_entries.end() || found->second.state == State::Aborted)
        return false;
    Entry &entry = found->second;
    entry.address = client;
    const Transfers count = countTransfers(client, account);
    if (count.all >= m_limits.transfers || count.ofAddress >= shareOf(m_limits.transfers)
        || count.ofAccount >= m_limits.transfers / accountsAtATime)
        return false;
    entry.account = account;
    entry.state = State::Transferring;
    entry.rate.emplace(std::chrono::steady_clock::now(), m_limits.rateWindow,
                       m_limits.minWindowBytes);
    return true;
}

void Connections::transferred(Id id, std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_entries.find(id); found != m_entries.end())
        found->second.bytes += static_cast<std::int64_t>(bytes);
}

void Connections::beginDrain(Id id)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(id);
    if (found == m_entries.end() || found->second.state == State::Aborted)
        return;
    found->second.state = State::Draining;
    found->second.deadline = std::chrono::steady_clock::now() + m_limits.replyTimeout;
}

void Connections::closed(Id id)
{
    const std::lock_guard lock(m_mutex);
    m_entries.erase(id);
}

void Connections::abortAll()
{
    const std::lock_guard lock(m_mutex);
    for (auto &[id, entry] : m_entries)
        abort(entry);
}

void Connections::abort(Entry &entry)
{
    entry.state = State::Aborted;
    try {
        // The plain socket's shutdown: the TLS state belongs to the thread that reads from it.
        entry.socket.impl()->SocketImpl::shutdown();
    } catch (const Poco::Exception &) {
        // The peer has already closed the connection.
        return;
    }
}

bool Connections::isOverdue(Entry &entry, Time now) const
{
    if (entry.state == State::Transferring)
        return entry.rate->isTooSlow(now, entry.bytes);
    return entry.state != State::Aborted && entry.deadline < now;
}

void Connections::watch()
{
    const auto interval =
        std::min<std::chrono::milliseconds>(m_limits.requestTimeout, std::chrono::seconds(1));
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, interval, [this] { return m_stopping; })) {
        const Time now = std::chrono::steady_clock::now();
        for (auto &[id, entry] : m_entries) {
            if (isOverdue(entry, now))
                abort(entry);
        }
    }
}

} // namespace localservice
