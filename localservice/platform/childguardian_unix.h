// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

// Exit codes of a guardian; any other one: the program has failed.
inline constexpr int guardianNotStarted = 127;
inline constexpr int guardianCancelled = 126;

/// The body of a process that was forked to run a program: executes it in a child of its own,
/// outlives the service, and terminates the program with all its descendants when the other end of
/// the pipe `lifeline` is closed, by a cancel or by the service's death. The program's output goes
/// to `output`. Never returns, and calls only async-signal-safe functions.
[[noreturn]] void guardChild(char *const *arguments, int lifeline, int output);

} // namespace localservice
