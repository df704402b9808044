// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/folders.h"

#include <cstdlib>

namespace localservice {

std::filesystem::path userDataFolder()
{
    const char *const data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && *data == '/')
        return data;
    const char *const home = std::getenv("HOME");
    return home != nullptr && *home != '\0' ? std::filesystem::path(home) / ".local/share" : "";
}

std::filesystem::path siblingProgram(const std::string &name)
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path() / name;
}

} // namespace localservice
