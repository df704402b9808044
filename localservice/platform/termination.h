// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Waits until the program shall end: on the system's signals or, if wanted, at the end of its
/// standard input. Then Ctrl+C is ignored, which a terminal sends to all its programs. Construct
/// one, before any thread. Also ignores SIGPIPE.
class Termination final
{
public:
    explicit Termination(bool watchInput);
    Termination(const Termination &) = delete;
    Termination &operator=(const Termination &) = delete;
    ~Termination();

    /// Returns when the program shall end.
    void wait();

private:
    bool m_watchInput;
};

} // namespace localservice
