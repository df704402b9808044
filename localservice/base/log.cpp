// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/log.h"

#include <Poco/DateTimeFormatter.h>
#include <Poco/TextConverter.h>
#include <Poco/TextIterator.h>
#include <Poco/Timestamp.h>
#include <Poco/UTF8Encoding.h>

#include <cstdio>

namespace localservice {

namespace {

constexpr int replacement = 0xfffd;

bool isControl(int c)
{
    return c < 0x20 || (c >= 0x7f && c <= 0x9f);
}

// Line and paragraph separators, and what changes the direction of the text.
bool isLayout(int c)
{
    return c == 0x061c || c == 0x200e || c == 0x200f || (c >= 0x2028 && c <= 0x202e)
        || (c >= 0x2066 && c <= 0x2069) || c == 0xfeff;
}

} // namespace

std::string printable(std::string_view text)
{
    const Poco::UTF8Encoding utf8;
    const std::string source(text);
    std::string result;
    const Poco::TextIterator end(source);
    for (Poco::TextIterator at(source, utf8); at != end; ++at) {
        const int c = *at < 0 ? replacement : *at;
        unsigned char bytes[4];
        const int length = utf8.convert(isControl(c) || isLayout(c) ? ' ' : c, bytes, sizeof bytes);
        result.append(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(length));
    }
    return result;
}

void log(std::string_view message)
{
    const std::string line =
        Poco::DateTimeFormatter::format(Poco::Timestamp(), "%Y-%m-%dT%H:%M:%SZ ")
        + printable(message) + "\n";
    // One call per line: the C library keeps lines of several threads apart.
    std::fputs(line.c_str(), stderr);
    // On Windows a file waits for the end of the program.
    std::fflush(stderr);
}

} // namespace localservice
