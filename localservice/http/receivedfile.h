// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace localservice {

/// The uploads in progress, by account and the client's file name. Thread-safe.
class ArrivingFiles final
{
public:
    void add(std::int64_t account, const std::string &name);
    void remove(std::int64_t account, const std::string &name);
    [[nodiscard]] bool contains(std::int64_t account, const std::string &name);

private:
    std::mutex m_mutex;
    std::multiset<std::pair<std::int64_t, std::string>> m_files;
};

/// An uploaded file on disk, under a name of the service's own. It is deleted with the object
/// unless keep() was called.
class ReceivedFile final
{
public:
    /// `folder` is where it is put; at most `mostBytes` are taken.
    ReceivedFile(std::filesystem::path folder, std::uint64_t maxFileBytes, ArrivingFiles &arriving);
    ReceivedFile(const ReceivedFile &) = delete;
    ReceivedFile &operator=(const ReceivedFile &) = delete;
    ~ReceivedFile();

    /// Begins for an account, under the client's name without any folder; throws BadRequest when it
    /// has begun already, or when the name is no text.
    void begin(std::int64_t account, const std::string &clientPath);
    /// Appends bytes. What cannot be stored is dropped, which finish() reports.
    void write(std::string_view bytes);
    /// Throws Refusal when the file is missing, was too large or did not fit on the disk.
    void finish();
    /// From now on the file stays.
    void keep() { m_kept = true; }

    [[nodiscard]] const std::string &clientName() const { return m_clientName; }
    [[nodiscard]] const std::string &diskName() const { return m_diskName; }
    [[nodiscard]] std::filesystem::path path() const { return m_folder / m_diskName; }

private:
    std::filesystem::path m_folder;
    std::uint64_t m_maxBytes;
    ArrivingFiles &m_arriving;
    std::int64_t m_account = 0;
    std::string m_clientName;
    std::string m_diskName;
    std::ofstream m_stream;
    std::uint64_t m_bytes = 0;
    bool m_begun = false;
    bool m_kept = false;
};

} // namespace localservice
