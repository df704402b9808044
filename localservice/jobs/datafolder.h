// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace localservice {

/// The service's data folder. All file names in it are the service's own.
class DataFolder final
{
public:
    /// Creates the folder, its subfolders and the database file. Only their owner can read what is
    /// in them; an existing folder itself keeps its permissions.
    explicit DataFolder(std::filesystem::path root);

    [[nodiscard]] std::filesystem::path database() const { return m_root / "service.db"; }
    /// The folders of what the database's rows name.
    [[nodiscard]] std::vector<std::filesystem::path> filesOfDatabase() const
    {
        return {m_root / "uploads", m_root / "results"};
    }
    /// See ControlFile.
    [[nodiscard]] static std::filesystem::path controlFile(const std::filesystem::path &root)
    {
        return root / "running";
    }
    /// Where the program that the service is embedded in finds its messages.
    [[nodiscard]] static std::filesystem::path logFile(const std::filesystem::path &root)
    {
        return root / "service.log";
    }
    /// What is left of the disk, in bytes.
    [[nodiscard]] std::uint64_t freeBytes() const noexcept;
    [[nodiscard]] std::filesystem::path upload(const std::string &file) const;
    [[nodiscard]] std::filesystem::path mainResult(const std::string &token) const;
    [[nodiscard]] std::filesystem::path mixResult(const std::string &token) const;
    /// Where the results of a job are written until they are whole: an empty folder.
    [[nodiscard]] std::filesystem::path makeStagingDir(const std::string &token) const;
    /// Moves both results to their final place at once.
    void publish(const std::string &token) const;
    /// Removes what is left of a job's unfinished work.
    void removeStagingDir(const std::string &token) const noexcept;
    /// Returns whether the file is gone: Windows keeps one that is open.
    [[nodiscard]] bool removeUpload(const std::string &file) const noexcept;
    void removeResults(const std::string &token) const noexcept;
    /// Removes results that belong to no job and are older than a time (in seconds since 1970),
    /// such as could not be removed with their job.
    void removeUnknownResults(const std::vector<std::string> &knownTokens,
                              std::int64_t before) const;
    /// Removes what an earlier run left unfinished: all staging folders, and unknown uploads.
    void removeLeftovers(const std::vector<std::string> &knownUploads) const;

private:
    std::filesystem::path m_root;
};

/// How many random bytes make the name of an upload on disk.
inline constexpr std::size_t diskNameBytes = 16;

/// The file names of the results within a folder of theirs.
inline constexpr const char *mainFile = "main.wav";
inline constexpr const char *mixFile = "mix.wav";

} // namespace localservice
