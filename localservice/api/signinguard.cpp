// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/signinguard.h"

#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"

#include <Poco/String.h>

#include <algorithm>
#include <map>

namespace localservice {

namespace {

// A hash takes about a tenth of a second: the last one in the queue waits for under two seconds.
constexpr std::size_t maxHashes = 16;
constexpr std::ptrdiff_t maxHashesOfAddress = 4;
constexpr const char *tooManyHashes =
    "Too many sign-ins at the same time. Please try again in a moment.";

std::string keyOf(const std::string &address, const std::string &email)
{
    return address + "\n" + Poco::toLower(email);
}

} // namespace

void SignInGuard::countTry(const std::string &address, const std::string &email)
{
    if (m_byAccount.isExhausted(keyOf(address, email)) || !m_byAddress.count(address))
        throw Refusal(tooManyTries);
}

void SignInGuard::countFailure(const std::string &address, const std::string &email)
{
    (void)m_byAccount.count(keyOf(address, email));
}

std::optional<std::size_t> placeFor(const std::vector<std::string> &queue,
                                    const std::string &address, std::size_t random)
{
    std::map<std::string, std::size_t> counts;
    for (const std::string &holder : queue)
        ++counts[holder];
    const std::size_t own = counts[address];
    const auto most =
        std::max_element(counts.begin(), counts.end(), [](const auto &one, const auto &other) {
            return one.second < other.second;
        });
    // The first one computes.
    if (most->second == 1 && own == 0 && queue.size() > 1)
        return 1 + random % (queue.size() - 1);
    if (most->second <= own + 1)
        return std::nullopt;
    const auto newest = std::find(queue.rbegin(), queue.rend(), most->first);
    return static_cast<std::size_t>(queue.rend() - newest) - 1;
}

void SignInGuard::enter(HashPlace &place)
{
    std::vector<std::string> addresses;
    for (const HashPlace *const other : m_queue)
        addresses.push_back(other->m_address);
    if (std::count(addresses.begin(), addresses.end(), place.m_address) >= maxHashesOfAddress)
        throw Refusal(tooManyHashes);
    if (m_queue.size() >= maxHashes) {
        const std::optional<std::size_t> taken =
            placeFor(addresses, place.m_address, static_cast<std::size_t>(randomId()));
        if (!taken)
            throw Refusal(tooManyHashes);
        m_queue[*taken]->m_isGivenAway = true;
        m_queue.erase(m_queue.begin() + static_cast<std::ptrdiff_t>(*taken));
        m_changed.notify_all();
    }
    m_queue.push_back(&place);
}

SignInGuard::HashPlace::HashPlace(SignInGuard &guard, std::string address)
    : m_guard(guard)
    , m_address(std::move(address))
{
    std::unique_lock lock(m_guard.m_mutex);
    m_guard.enter(*this);
    m_guard.m_changed.wait(lock,
                           [this] { return m_isGivenAway || m_guard.m_queue.front() == this; });
    if (m_isGivenAway)
        throw Refusal(tooManyHashes);
}

SignInGuard::HashPlace::~HashPlace()
{
    const std::lock_guard lock(m_guard.m_mutex);
    m_guard.m_queue.erase(m_guard.m_queue.begin());
    m_guard.m_changed.notify_all();
}

} // namespace localservice
