// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/log.h"

#include <Poco/DateTimeFormatter.h>
#include <Poco/Timestamp.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace localservice {

void log(std::string_view message)
{
    std::string line = Poco::DateTimeFormatter::format(Poco::Timestamp(), "%Y-%m-%dT%H:%M:%SZ ");
    line += message;
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, ' ');
    line += '\n';
    // One call per line: the C library keeps lines of several threads apart.
    std::fputs(line.c_str(), stderr);
}

} // namespace localservice
