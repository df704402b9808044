// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/datafolder.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace localservice {

DataFolder::DataFolder(fs::path root)
    : m_root(std::move(root))
{
    for (const char *name : {"uploads", "work", "results"})
        fs::create_directories(m_root / name);
    fs::permissions(m_root, fs::perms::owner_all);
}

fs::path DataFolder::upload(const std::string &file) const
{
    return m_root / "uploads" / file;
}

fs::path DataFolder::mainResult(const std::string &token) const
{
    return m_root / "results" / token / kMainFile;
}

fs::path DataFolder::mixResult(const std::string &token) const
{
    return m_root / "results" / token / kMixFile;
}

fs::path DataFolder::openWorkshop(const std::string &token) const
{
    fs::path folder = m_root / "work" / token;
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder;
}

void DataFolder::publish(const std::string &token) const
{
    removeResults(token);
    fs::rename(m_root / "work" / token, m_root / "results" / token);
}

void DataFolder::clearWorkshop(const std::string &token) const noexcept
{
    std::error_code ignored;
    fs::remove_all(m_root / "work" / token, ignored);
}

void DataFolder::removeUpload(const std::string &file) const noexcept
{
    std::error_code ignored;
    fs::remove(upload(file), ignored);
}

void DataFolder::removeResults(const std::string &token) const noexcept
{
    std::error_code ignored;
    fs::remove_all(m_root / "results" / token, ignored);
}

void DataFolder::tidy(const std::vector<std::string> &knownUploads) const
{
    for (const auto &entry : fs::directory_iterator(m_root / "work"))
        clearWorkshop(entry.path().filename().string());
    for (const auto &entry : fs::directory_iterator(m_root / "uploads")) {
        const std::string name = entry.path().filename().string();
        if (std::find(knownUploads.begin(), knownUploads.end(), name) == knownUploads.end())
            removeUpload(name);
    }
}

} // namespace localservice
