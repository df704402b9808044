// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// Part of each program of the command line, whatever it is built on.
#include <cstdio>
#include <fcntl.h>
#include <io.h>

#include <windows.h>

namespace {

// Returns whether the stream goes to a console. Written byte by byte, as without a buffer, a
// character of several bytes is not shown.
bool takeWholeMessages(FILE *stream)
{
    const int file = _fileno(stream);
    DWORD mode = 0;
    if (file < 0 || !GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(file)), &mode))
        return false;
    _setmode(file, _O_BINARY);
    return setvbuf(stream, nullptr, _IOFBF, BUFSIZ) == 0;
}

// Has a console show UTF-8 from the program's start to its end.
class Utf8Console final
{
public:
    Utf8Console()
    {
        const bool hasOutput = takeWholeMessages(stdout);
        if (!takeWholeMessages(stderr) && !hasOutput)
            return;
        m_usersCodePage = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
    }
    Utf8Console(const Utf8Console &) = delete;
    Utf8Console &operator=(const Utf8Console &) = delete;
    ~Utf8Console()
    {
        std::fflush(nullptr);
        if (m_usersCodePage != 0)
            SetConsoleOutputCP(m_usersCodePage);
    }

private:
    UINT m_usersCodePage = 0;
};

const Utf8Console console;

} // namespace
