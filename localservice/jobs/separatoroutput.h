// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

namespace localservice {

/// Reads the lines that a separator program prints: "progress SHARE" (0 to 1) updates its progress,
/// "error: SENTENCE" is the reason of its failure, all others go to a log.
class SeparatorOutput final
{
public:
    using Log = std::function<void(std::string_view)>;

    SeparatorOutput(std::atomic<double> &progress, Log log);

    /// Takes the next bytes, in pieces of any size. A line beyond 4096 bytes is cut.
    void feed(std::string_view bytes);
    /// To be called when the program has ended: the last line may lack its end.
    void finish();
    /// The last sentence behind "error:"; "" when there was none.
    [[nodiscard]] const std::string &error() const { return m_error; }

private:
    void readLine(std::string_view line);

    std::atomic<double> &m_progress;
    Log m_log;
    std::string m_line;
    std::string m_error;
};

} // namespace localservice
