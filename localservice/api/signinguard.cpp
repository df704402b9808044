// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/signinguard.h"

#include "localservice/base/refusal.h"

#include <Poco/String.h>

namespace localservice {

namespace {

// A hash takes about a tenth of a second: the last one in the queue waits for under two seconds.
constexpr std::size_t maxHashes = 16;
constexpr std::size_t maxHashesOfAddress = 4;

std::string keyOf(const std::string &address, const std::string &email)
{
    return address + "\n" + Poco::toLower(email);
}

} // namespace

void SignInGuard::check(const std::string &address, const std::string &email)
{
    if (m_byAccount.isExhausted(keyOf(address, email)) || m_byAddress.isExhausted(address))
        throw Refusal("Too many tries. Please wait a minute and try again.");
}

void SignInGuard::countFailure(const std::string &address, const std::string &email)
{
    (void)m_byAccount.count(keyOf(address, email));
    (void)m_byAddress.count(address);
}

SignInGuard::HashPlace::HashPlace(SignInGuard &guard, std::string address)
    : m_guard(guard)
    , m_address(std::move(address))
{
    const std::lock_guard lock(m_guard.m_mutex);
    if (m_guard.m_hashing.size() >= maxHashes
        || m_guard.m_hashing.count(m_address) >= maxHashesOfAddress)
        throw Refusal("Too many sign-ins at the same time. Please try again in a moment.");
    m_guard.m_hashing.insert(m_address);
}

SignInGuard::HashPlace::~HashPlace()
{
    const std::lock_guard lock(m_guard.m_mutex);
    m_guard.m_hashing.erase(m_guard.m_hashing.find(m_address));
}

} // namespace localservice
