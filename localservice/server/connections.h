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

/// All open connections. Aborts those whose requests do not arrive in time, so that idle clients do
/// not occupy the threads. Thread-safe.
class Connections final
{
public:
    /// `timeout` is the time from opened() to requestRead().
    explicit Connections(std::chrono::milliseconds time);
    Connections(const Connections &) = delete;
    Connections &operator=(const Connections &) = delete;
    ~Connections();

    void opened(const std::string &peer, const Poco::Net::StreamSocket &socket);
    /// As much of its request has been read as must be there in time. False when the connection was
    /// cut before: what has been read may then be less than was sent.
    [[nodiscard]] bool requestRead(const std::string &peer);
    void closed(const std::string &peer);
    /// Aborts all connections.
    void shutdownAll();

private:
    enum class State { Awaited, Read, Aborted };
    struct Entry
    {
        Poco::Net::StreamSocket socket;
        std::chrono::steady_clock::time_point since;
        State state = State::Awaited;
    };

    static void abort(Entry &entry);
    void watch();

    std::chrono::milliseconds m_timeout;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<std::string, Entry> m_entries; // by the peer's address and port
    std::thread m_watcher;
};

} // namespace localservice
