// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Waits for the request to terminate: a signal of the system or, optionally, the end of standard
/// input; with the latter Ctrl+C is ignored, which a terminal sends to all its programs. Construct
/// one, before any thread. Also ignores SIGPIPE.
class Termination final
{
public:
    explicit Termination(bool watchInput);
    Termination(const Termination &) = delete;
    Termination &operator=(const Termination &) = delete;
    ~Termination();

    /// Returns when the program should terminate.
    void wait();

private:
    bool m_watchInput;
};

} // namespace localservice
