// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace localservice {

/// Learns when the program shall end: by the system's signals or, if wanted, when its standard
/// input ends. Make one object, before any thread. Writing to a closed connection no longer ends
/// the program.
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
