// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/transferrate.h"

#include <Poco/Net/StreamSocket.h>

#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace localservice {

/// How many connections there may be, and how long each may take.
struct ConnectionLimits
{
    std::size_t connections = 400;
    std::size_t transfers = 300; ///< uploads and results; the rest is left to short requests
    std::chrono::milliseconds requestTimeout = std::chrono::seconds(10); ///< for header and form
    std::chrono::milliseconds replyTimeout = std::chrono::seconds(60); ///< for all that follows
    std::chrono::milliseconds rateWindow = std::chrono::seconds(60);
    std::int64_t minWindowBytes = std::int64_t{60} * 4096; ///< of a transfer in each window
};

/// All open connections, and the rules that keep slow or many clients from occupying the service:
/// deadlines for requests and replies, a minimum rate for transfers, and a share for each address
/// and account.
/// When there are too many, one is aborted for a new one: the oldest without a complete request,
/// otherwise the oldest that is being answered. Transfers keep their place.
/// Thread-safe.
class Connections final
{
public:
    using Id = const Poco::Net::SocketImpl *;

    /// The trusted proxy's IP address ("": none) may have all connections: their clients are known
    /// only once they begin a transfer.
    Connections(const ConnectionLimits &limits, std::string trustedProxy);
    Connections(const Connections &) = delete;
    Connections &operator=(const Connections &) = delete;
    ~Connections();

    /// Registers a new connection. False: it must be closed, there is no room for it.
    [[nodiscard]] bool open(const Poco::Net::StreamSocket &socket);
    /// Its request has been read, so that only the reply is left. False when the connection was
    /// aborted before: what has been read may then be less than was sent.
    [[nodiscard]] bool requestRead(Id id);
    /// An upload or a result of a client and an account begins, which from now on has a minimum
    /// rate instead of a deadline. False when too many are under way, of all, this client or this
    /// account.
    [[nodiscard]] bool beginTransfer(Id id, const std::string &client, std::int64_t account);
    /// Counts the bytes of a transfer.
    void transferred(Id id, std::size_t bytes);
    /// A refused upload is read to its end, so that the client sees the answer: as long as the
    /// reply may take, and only while there is room.
    void beginDrain(Id id);
    /// The connection is about to be closed, and must no longer be aborted. Can be repeated.
    void closed(Id id);
    /// Aborts all connections.
    void abortAll();

private:
    enum class State { Reading, Draining, Replying, Transferring, Aborted };
    using Time = std::chrono::steady_clock::time_point;
    struct Entry
    {
        Poco::Net::StreamSocket socket;
        std::string address; // of the client; "" behind the proxy until it is known
        State state;
        Time opened;
        Time deadline;
        std::int64_t bytes = 0;
        std::int64_t account = 0; // of the transfer
        std::optional<TransferRate> rate;
    };

    [[nodiscard]] std::size_t count(const std::string &address) const;
    struct Transfers
    {
        std::size_t all = 0;
        std::size_t ofAddress = 0;
        std::size_t ofAccount = 0;
    };
    [[nodiscard]] Transfers countTransfers(const std::string &address, std::int64_t account) const;
    [[nodiscard]] Entry *oldest(const std::string &address, std::initializer_list<State> states);
    [[nodiscard]] bool abortOldest(const std::string &address);
    [[nodiscard]] bool makeRoom(const std::string &address);
    [[nodiscard]] bool isOverdue(Entry &entry, Time now) const;
    static void abort(Entry &entry);
    void watch();

    const ConnectionLimits m_limits;
    const std::string m_trustedProxy;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<Id, Entry> m_entries;
    std::thread m_watcher;
};

} // namespace localservice
