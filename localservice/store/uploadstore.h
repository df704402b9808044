// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/store/database.h"

#include <optional>
#include <string>
#include <vector>

namespace localservice {

/// A file that an account has sent. `file` is its name on the service's disk, `name` the client's.
struct Upload
{
    std::int64_t id = 0;
    std::int64_t account = 0;
    std::string name;
    std::string file;
    double seconds = 0;
    std::int64_t bytes = 0;
};

/// The uploaded files that the service keeps. Thread-safe.
class UploadStore final
{
public:
    explicit UploadStore(Database &database)
        : m_database(database)
    { }

    /// Keeps a new file; an older one of the same account and name is removed. Returns its id.
    std::int64_t add(const Upload &upload);
    /// The file by account and client file name, unless it was removed.
    [[nodiscard]] std::optional<Upload> find(std::int64_t account, const std::string &name);
    /// A file by its id, also a removed one that a job still needs.
    [[nodiscard]] std::optional<Upload> find(std::int64_t id);
    /// Marks the file as removed, by account and client file name.
    void remove(std::int64_t account, const std::string &name);
    /// Marks what was uploaded before a time (in seconds since 1970) as removed.
    void removeOlderThan(std::int64_t time);
    /// Deletes the rows of removed files that no job needs any longer, and returns their names on
    /// disk. Files of waiting and running jobs are needed, and those of demo results added after
    /// `demosBefore`, which may still be processed in full.
    [[nodiscard]] std::vector<std::string> takeUnneeded(std::int64_t demosBefore);
    /// The names on disk of all files that are kept.
    [[nodiscard]] std::vector<std::string> files();

private:
    void markRemoved(std::int64_t account, const std::string &name);

    Database &m_database;
};

} // namespace localservice
