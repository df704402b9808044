// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/store/diskreserve.h"

#include <fstream>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace localservice {

namespace {

constexpr std::size_t reserveBytes = 1 << 20;

} // namespace

DiskReserve::DiskReserve(fs::path file)
    : m_file(std::move(file))
{
    refill();
}

void DiskReserve::refill() noexcept
{
    std::error_code error;
    if (fs::file_size(m_file, error) == reserveBytes && !error)
        return;
    if (fs::space(m_file.parent_path(), error).available < 2 * reserveBytes || error)
        return;
    std::ofstream file(m_file, std::ios::binary | std::ios::trunc);
    // Not zeros, which some file systems do not store.
    for (std::size_t i = 0; file && i < reserveBytes; ++i)
        file.put(static_cast<char>(i * i >> 5));
}

void DiskReserve::release() noexcept
{
    std::error_code ignored;
    fs::remove(m_file, ignored);
}

} // namespace localservice
