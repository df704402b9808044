// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/password.h"

#include <sodium.h>

#include <array>
#include <mutex>
#include <new>

namespace localservice {

namespace {

std::mutex &hashMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::string computeHash(const std::string &password)
{
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (crypto_pwhash_str_alg(hash.data(), password.data(), password.size(),
                              crypto_pwhash_OPSLIMIT_INTERACTIVE,
                              crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13)
        != 0)
        throw std::bad_alloc();
    return hash.data();
}

} // namespace

std::string passwordHash(const std::string &password)
{
    const std::lock_guard lock(hashMutex());
    return computeHash(password);
}

bool passwordMatches(const std::string &hash, const std::string &password)
{
    const std::lock_guard lock(hashMutex());
    static const std::string dummyHash = computeHash("no account's password");
    const std::string &known = hash.empty() ? dummyHash : hash;
    const bool same =
        crypto_pwhash_str_verify(known.c_str(), password.data(), password.size()) == 0;
    return same && !hash.empty();
}

} // namespace localservice
