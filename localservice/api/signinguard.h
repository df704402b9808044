// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/ratelimiter.h"

#include <mutex>
#include <set>
#include <string>

namespace localservice {

/// Slows down guessing. Wrong tries count for an address with an account, and for an address with
/// all accounts, so that they do not lock an account's owner out at another address. Thread-safe.
class SignInGuard final
{
public:
    /// Throws Refusal when the address has tried too often.
    void check(const std::string &address, const std::string &email);
    void countFailure(const std::string &address, const std::string &email);

    /// A place in the queue for the computation of a password hash, as long as it exists.
    class HashPlace
    {
    public:
        /// Throws Refusal when the queue, or the address' part of it, is full.
        HashPlace(SignInGuard &guard, std::string address);
        HashPlace(const HashPlace &) = delete;
        HashPlace &operator=(const HashPlace &) = delete;
        ~HashPlace();

    private:
        SignInGuard &m_guard;
        std::string m_address;
    };

private:
    RateLimiter m_byAccount{10};
    RateLimiter m_byAddress{30};
    std::mutex m_mutex;
    std::multiset<std::string> m_hashing; // the addresses in the queue
};

} // namespace localservice
