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
/// the calling thread. When `cancelled` becomes true or the service dies, it is asked to terminate,
/// and killed if it does not within seconds, together with all processes that it has started.
[[nodiscard]] ChildResult runChild(const std::vector<std::string> &words,
                                   const std::atomic<bool> &cancelled,
                                   const OutputHandler &onOutput);

} // namespace localservice
