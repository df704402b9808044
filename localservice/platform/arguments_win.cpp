// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/arguments.h"

#include "localservice/base/paths.h"

#include <memory>

#include <windows.h>

#include <shellapi.h>

namespace localservice {

// main()'s arguments have lost every letter that the system's old code page does not know.
std::vector<std::string> commandLineWords(int, char **)
{
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> result;
    for (int i = 1; words && i < count; ++i)
        result.push_back(utf8(words.get()[i]));
    return result;
}

} // namespace localservice
