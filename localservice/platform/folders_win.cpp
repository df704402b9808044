// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/folders.h"

#include <cstdlib>

namespace localservice {

std::filesystem::path userDataFolder()
{
    const wchar_t *const data = _wgetenv(L"LOCALAPPDATA");
    return data != nullptr ? data : L"";
}

} // namespace localservice
