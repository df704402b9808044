// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Poco/Net/HTTPClientSession.h>

#include <filesystem>
#include <memory>
#include <string>

namespace localservice {

/// A file in the data folder by which "teko-service status" finds the running service: its address,
/// and a key that only readers of the file know. It is emptied with the object.
class ControlFile final
{
public:
    /// Writes the address and the key to the file; a failure is logged only.
    ControlFile(std::filesystem::path file, const std::string &url, const std::string &key);
    ControlFile(const ControlFile &) = delete;
    ControlFile &operator=(const ControlFile &) = delete;
    ~ControlFile();

private:
    std::filesystem::path m_file;
};

/// Asks the service that has written the file for its status. Throws Poco::Exception or
/// std::runtime_error when there is none.
[[nodiscard]] std::string fetchStatus(const std::filesystem::path &controlFile);

} // namespace localservice
