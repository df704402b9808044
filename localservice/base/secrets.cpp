// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/secrets.h"

#include <sodium.h>

#include <array>
#include <limits>
#include <stdexcept>
#include <vector>

namespace localservice {

namespace {

std::string hex(const unsigned char *bytes, std::size_t count)
{
    std::string text(count * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, count);
    text.pop_back();
    return text;
}

const unsigned char *bytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

} // namespace

void initialiseSecrets()
{
    if (sodium_init() < 0)
        throw std::runtime_error("The system has no source of random numbers.");
}

std::string randomHex(std::size_t bytes)
{
    std::vector<unsigned char> buffer(bytes);
    randombytes_buf(buffer.data(), buffer.size());
    return hex(buffer.data(), buffer.size());
}

std::int32_t randomId()
{
    constexpr auto maxId = static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
    return static_cast<std::int32_t>(randombytes_uniform(maxId) + 1);
}

std::string keyedDigest(std::string_view text, std::string_view key)
{
    std::array<unsigned char, crypto_generichash_BYTES> digest{};
    crypto_generichash(digest.data(), digest.size(), bytesOf(text), text.size(), bytesOf(key),
                       std::min<std::size_t>(key.size(), crypto_generichash_KEYBYTES_MAX));
    return hex(digest.data(), digest.size());
}

bool sameSecret(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && sodium_memcmp(one.data(), other.data(), one.size()) == 0;
}

} // namespace localservice
