// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace localservice {

/// How a child process ended.
enum class ChildResult { Succeeded, Failed, NotStarted, Cancelled };

/// Receives what a child process prints, in pieces of any size.
using OutputHandler = std::function<void(std::string_view)>;

/// Runs a program (the first word, searched in PATH) with its arguments, without a shell, and waits
/// for its end. Its input is empty; `onOutput` receives its standard output and standard error on
/// the calling thread. When `cancelled` becomes true it is asked to end, and is killed if it does
/// not within seconds; so it is when the service dies. With it end all processes that it has
/// started.
[[nodiscard]] ChildResult runChild(const std::vector<std::string> &words,
                                   const std::atomic<bool> &cancelled,
                                   const OutputHandler &onOutput);

} // namespace localservice
