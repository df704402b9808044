// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <string>
#include <vector>

namespace localservice {

/// How a child process ended.
enum class ChildResult { Succeeded, Failed, NotStarted, Cancelled };

/// Runs a program (the first word, searched in PATH) with its arguments, without a shell, and waits
/// for its end. Its input is empty, its standard output goes to the service's log. When `cancelled`
/// becomes true it is ended together with all programs that it has started; when the service dies,
/// it is ended as well.
[[nodiscard]] ChildResult runChild(const std::vector<std::string> &words,
                                   const std::atomic<bool> &cancelled);

} // namespace localservice
