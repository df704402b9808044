// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/newfile.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace localservice {

std::error_code createNewFile(const std::filesystem::path &path)
{
    constexpr mode_t everybody = 0666; // which the umask restricts
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (file < 0)
        return {errno, std::generic_category()};
    close(file);
    return {};
}

} // namespace localservice
