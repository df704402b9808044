// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/StreamSocket.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace localservice {

/// Knows all open connections, and closes those that do not send their request's header in time, so
/// that nobody can hold the service's threads by saying nothing. Thread-safe.
class Connections final
{
public:
    explicit Connections(std::chrono::seconds headerTime);
    Connections(const Connections &) = delete;
    Connections &operator=(const Connections &) = delete;
    ~Connections();

    void opened(const std::string &peer, const Poco::Net::StreamSocket &socket);
    void headerRead(const std::string &peer);
    void closed(const std::string &peer);
    /// Cuts all connections.
    void shutdownAll();

private:
    struct Entry
    {
        Poco::Net::StreamSocket socket;
        std::chrono::steady_clock::time_point since;
        bool headerRead = false;
    };

    void watch();

    std::chrono::seconds m_headerTime;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<std::string, Entry> m_entries; // by the peer's address and port
    std::thread m_watcher;
};

} // namespace localservice
