// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/folders.h"

#include <cstdlib>

#include <windows.h>

namespace localservice {

std::filesystem::path userDataFolder()
{
    const wchar_t *const data = _wgetenv(L"LOCALAPPDATA");
    return data != nullptr ? data : L"";
}

std::filesystem::path siblingProgram(const std::string &name)
{
    std::wstring path(MAX_PATH, L'\0');
    // As many characters as fit: then there are more.
    while (GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())) == path.size())
        path.resize(2 * path.size());
    return std::filesystem::path(path.c_str()).parent_path() / (name + ".exe");
}

} // namespace localservice
