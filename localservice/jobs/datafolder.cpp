// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/datafolder.h"

#include "localservice/base/paths.h"
#include "localservice/store/database.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace localservice {

namespace {

// The service's own names are long hexadecimal numbers. Other files in its folders belong to
// somebody else and stay.
void removeIfOwn(const fs::path &path)
{
    const std::string stem = utf8(path.stem());
    const bool isHex = stem.find_first_not_of("0123456789abcdef") == std::string::npos;
    std::error_code ignored;
    if (isHex && stem.size() >= 2 * diskNameBytes)
        fs::remove_all(path, ignored);
}

constexpr fs::perms ownerFile = fs::perms::owner_read | fs::perms::owner_write;

// Some file systems have no permissions.
void restrictToOwner(const fs::path &path, fs::perms permissions)
{
    std::error_code ignored;
    fs::permissions(path, permissions, ignored);
}

// The database and what lies beside it, also from earlier runs, such as "service.log" and
// "service.db.damaged-…".
void restrictOwnFiles(const fs::path &root)
{
    for (const auto &entry : fs::directory_iterator(root)) {
        const std::string name = utf8(entry.path().filename());
        const bool isOwn = name.rfind("service.", 0) == 0 || name == "reserve"
            || entry.path() == DataFolder::controlFile(root);
        std::error_code ignored;
        if (isOwn && entry.is_regular_file(ignored) && !entry.is_symlink(ignored))
            restrictToOwner(entry.path(), ownerFile);
    }
}

void makePrivateFolder(const fs::path &folder)
{
    fs::create_directory(folder);
    restrictToOwner(folder, fs::perms::owner_all);
}

} // namespace

DataFolder::DataFolder(fs::path root)
    : m_root(std::move(root))
{
    // An existing folder keeps its permissions.
    if (fs::create_directories(m_root))
        fs::permissions(m_root, fs::perms::owner_all);
    for (const char *name : {"uploads", "work", "results"})
        makePrivateFolder(m_root / name);
    // SQLite creates the files beside the database with the same permissions.
    if (!fs::exists(database()))
        std::ofstream stream(database());
    restrictOwnFiles(m_root);
}

std::uint64_t DataFolder::freeBytes() const noexcept
{
    std::error_code unknown;
    const std::uintmax_t bytes = fs::space(m_root, unknown).available;
    return unknown ? 0 : bytes;
}

fs::path DataFolder::upload(const std::string &file) const
{
    return m_root / "uploads" / file;
}

fs::path DataFolder::mainResult(const std::string &token) const
{
    return m_root / "results" / token / mainFile;
}

fs::path DataFolder::mixResult(const std::string &token) const
{
    return m_root / "results" / token / mixFile;
}

fs::path DataFolder::makeStagingDir(const std::string &token) const
{
    fs::path folder = m_root / "work" / token;
    fs::remove_all(folder);
    makePrivateFolder(folder);
    return folder;
}

void DataFolder::publish(const std::string &token) const
{
    removeResults(token);
    const fs::path folder = m_root / "work" / token;
    for (const char *file : {mainFile, mixFile})
        restrictToOwner(folder / file, ownerFile);
    fs::rename(folder, m_root / "results" / token);
}

void DataFolder::removeStagingDir(const std::string &token) const noexcept
{
    std::error_code ignored;
    fs::remove_all(m_root / "work" / token, ignored);
}

bool DataFolder::removeUpload(const std::string &file) const noexcept
{
    std::error_code error;
    fs::remove(upload(file), error);
    return !error;
}

void DataFolder::removeResults(const std::string &token) const noexcept
{
    std::error_code ignored;
    fs::remove_all(m_root / "results" / token, ignored);
}

void DataFolder::removeUnknownResults(const std::vector<std::string> &knownTokens,
                                      std::int64_t before) const
{
    const auto limit =
        fs::file_time_type::clock::now() - std::chrono::seconds(secondsNow() - before);
    for (const auto &entry : fs::directory_iterator(m_root / "results")) {
        std::error_code ignored;
        const std::string name = utf8(entry.path().filename());
        const bool isKnown =
            std::find(knownTokens.begin(), knownTokens.end(), name) != knownTokens.end();
        if (!isKnown && entry.last_write_time(ignored) < limit)
            removeIfOwn(entry.path());
    }
}

void DataFolder::removeLeftovers(const std::vector<std::string> &knownUploads) const
{
    for (const auto &entry : fs::directory_iterator(m_root / "work"))
        removeIfOwn(entry.path());
    for (const auto &entry : fs::directory_iterator(m_root / "uploads")) {
        const std::string name = utf8(entry.path().filename());
        if (std::find(knownUploads.begin(), knownUploads.end(), name) == knownUploads.end())
            removeIfOwn(entry.path());
    }
}

} // namespace localservice
