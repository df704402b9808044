// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/api/licence.h"
#include "localservice/server/httpserver.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace localservice {

/// The parsed command line.
struct Options
{
    ServerSettings server;
    std::filesystem::path data;
    bool embedded = false;
    bool showStatus = false; ///< of a running service, instead of running one
    std::vector<std::string> separator; ///< words of a command; empty: the built-in separator
    int workers = 1;
    Licence licence;
    int keepDays = 30;
    std::uint64_t maxUploadBytes = 0;
    bool showHelp = false;
    bool showVersion = false;
};

/// An invalid command line; what() is an error message.
class UsageError final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads the command line (without the program's name): "--name value" or "--name=value".
/// Throws UsageError.
[[nodiscard]] Options parseOptions(const std::vector<std::string> &arguments);

/// What --help shows.
[[nodiscard]] std::string helpText();

} // namespace localservice
