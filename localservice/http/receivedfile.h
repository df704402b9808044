// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace localservice {

/// The sentence for an account that has used up its room on the disk.
inline constexpr const char *noRoomForAccount =
    "Your account has no room left on the service. It gets room when older results expire.";

/// The uploads in progress, by account and the client's file name. Thread-safe.
class ArrivingFiles final
{
public:
    void add(std::int64_t account, const std::string &name);
    /// `bytes` is what was added by grow().
    void remove(std::int64_t account, const std::string &name, std::uint64_t bytes);
    [[nodiscard]] bool contains(std::int64_t account, const std::string &name);
    /// Adds to the bytes that an account is sending; returns their sum over its files.
    std::uint64_t grow(std::int64_t account, std::uint64_t bytes);

private:
    std::mutex m_mutex;
    std::multiset<std::pair<std::int64_t, std::string>> m_files;
    std::map<std::int64_t, std::uint64_t> m_bytes;
};

/// An uploaded file on disk, under a name of the service's own. It is deleted with the object
/// unless keep() was called.
class ReceivedFile final
{
public:
    /// `folder` is where it is put; at most `maxFileBytes` are taken.
    ReceivedFile(std::filesystem::path folder, std::uint64_t maxFileBytes, ArrivingFiles &arriving);
    ReceivedFile(const ReceivedFile &) = delete;
    ReceivedFile &operator=(const ReceivedFile &) = delete;
    ~ReceivedFile();

    /// Begins for an account, under the client's name without any folder; throws BadRequest when it
    /// has begun already, or when the name is no text.
    /// `room` is what the account may keep on the disk in addition to what it has there.
    void begin(std::int64_t account, const std::string &clientPath, std::uint64_t room);
    /// Appends bytes. Throws Refusal when the file becomes too large or does not fit; it is deleted
    /// then, and nothing more may be written.
    void write(std::string_view bytes);
    /// Throws Refusal when the file is missing or did not fit.
    void finish();
    /// From now on the file stays.
    void keep() { m_kept = true; }

    [[nodiscard]] const std::string &clientName() const { return m_clientName; }
    [[nodiscard]] const std::string &diskName() const { return m_diskName; }
    [[nodiscard]] std::filesystem::path path() const { return m_folder / m_diskName; }

private:
    void end();
    [[noreturn]] void refuse(const char *sentence);

    std::filesystem::path m_folder;
    std::uint64_t m_maxBytes;
    ArrivingFiles &m_arriving;
    std::int64_t m_account = 0;
    std::string m_clientName;
    std::string m_diskName;
    std::ofstream m_stream;
    std::uint64_t m_bytes = 0;
    std::uint64_t m_room = 0;
    bool m_begun = false;
    bool m_isOpen = false;
    bool m_kept = false;
};

} // namespace localservice
