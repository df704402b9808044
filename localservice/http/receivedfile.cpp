// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/http/receivedfile.h"

#include "localservice/base/refusal.h"
#include "localservice/base/secrets.h"
#include "localservice/http/fields.h"
#include "localservice/jobs/datafolder.h"

namespace localservice {

namespace {

constexpr const char *diskFull = "The service has no room left on its disk.";

} // namespace

void ArrivingFiles::add(std::int64_t account, const std::string &name)
{
    const std::lock_guard lock(m_mutex);
    m_files.insert({account, name});
}

std::uint64_t ArrivingFiles::grow(std::int64_t account, std::uint64_t bytes)
{
    const std::lock_guard lock(m_mutex);
    return m_bytes[account] += bytes;
}

void ArrivingFiles::remove(std::int64_t account, const std::string &name, std::uint64_t bytes)
{
    const std::lock_guard lock(m_mutex);
    if ((m_bytes[account] -= bytes) == 0)
        m_bytes.erase(account);
    if (const auto found = m_files.find({account, name}); found != m_files.end())
        m_files.erase(found);
}

bool ArrivingFiles::contains(std::int64_t account, const std::string &name)
{
    const std::lock_guard lock(m_mutex);
    return m_files.contains({account, name});
}

ReceivedFile::ReceivedFile(std::filesystem::path folder, std::uint64_t maxFileBytes,
                           ArrivingFiles &arriving)
    : m_folder(std::move(folder))
    , m_maxBytes(maxFileBytes)
    , m_arriving(arriving)
    , m_diskName(randomHex(diskNameBytes) + ".wav")
{ }

ReceivedFile::~ReceivedFile()
{
    end();
}

void ReceivedFile::end()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    m_arriving.remove(m_account, m_clientName, m_bytes);
    m_stream.close();
    std::error_code ignored;
    if (!m_kept)
        std::filesystem::remove(path(), ignored);
}

void ReceivedFile::begin(std::int64_t account, const std::string &clientPath, std::uint64_t room)
{
    if (m_begun)
        throw BadRequest("The upload holds more than one file.");
    if (!Fields::isText(clientPath))
        throw BadRequest("The name of the file is not text in UTF-8.");
    m_begun = true;
    m_isOpen = true;
    m_account = account;
    m_room = room;
    m_clientName = baseName(clientPath);
    m_arriving.add(m_account, m_clientName);
    m_stream.open(path(), std::ios::binary | std::ios::trunc);
}

void ReceivedFile::write(std::string_view bytes)
{
    m_bytes += bytes.size();
    const bool isOverRoom = m_arriving.grow(m_account, bytes.size()) > m_room;
    if (m_bytes > m_maxBytes)
        refuse("The file is too large for the service.");
    if (isOverRoom)
        refuse(noRoomForAccount);
    if (!m_stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        refuse(diskFull);
}

void ReceivedFile::refuse(const char *sentence)
{
    end();
    throw Refusal(sentence);
}

void ReceivedFile::finish()
{
    if (!m_begun)
        throw Refusal("The file to process is missing.");
    m_stream.close();
    if (!m_stream)
        refuse(diskFull);
}

} // namespace localservice
