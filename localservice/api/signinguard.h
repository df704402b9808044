// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/ratelimiter.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace localservice {

/// The sentence for whoever is slowed down.
inline constexpr const char *tooManyTries = "Too many tries. Please wait a minute and try again.";

/// Slows down guessing. Wrong tries count for an address with an account, and all tries for an
/// address with all accounts, so that they do not lock an account's owner out at another address.
/// Thread-safe.
class SignInGuard final
{
public:
    /// Counts a try. Throws Refusal when the address has tried too often.
    void countTry(const std::string &address, const std::string &email);
    void countFailure(const std::string &address, const std::string &email);

    /// The right to compute a password hash, as long as it exists.
    class HashPlace
    {
    public:
        /// Waits in a queue. Throws Refusal when that, or the address' part of it, is full, and
        /// when the place in it is given to another address.
        HashPlace(SignInGuard &guard, std::string address);
        HashPlace(const HashPlace &) = delete;
        HashPlace &operator=(const HashPlace &) = delete;
        ~HashPlace();

    private:
        friend SignInGuard;
        SignInGuard &m_guard;
        std::string m_address;
        bool m_isGivenAway = false;
    };

private:
    void enter(HashPlace &place);

    RateLimiter m_byAccount{10};
    RateLimiter m_byAddress{30};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<HashPlace *> m_queue; // the first one computes
};

/// Which place of a full queue of addresses, the oldest first, goes to a newcomer's address: the
/// newest one of the address with the most places, if that has more than the newcomer will have.
/// When all have one, and the newcomer none, it is any but the first: the one at `random`. So many
/// addresses together keep nobody out for long.
[[nodiscard]] std::optional<std::size_t> placeFor(const std::vector<std::string> &queue,
                                                  const std::string &address, std::size_t random);

} // namespace localservice
