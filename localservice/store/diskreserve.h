// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

namespace localservice {

/// A file that keeps some of the disk free, so that a full disk can still be cleaned up: deleting
/// rows takes room as well. Not thread-safe.
class DiskReserve final
{
public:
    explicit DiskReserve(std::filesystem::path file);

    /// Creates the file when it is missing and the disk has room for it.
    void refill() noexcept;
    /// Deletes the file.
    void release() noexcept;

private:
    std::filesystem::path m_file;
};

} // namespace localservice
