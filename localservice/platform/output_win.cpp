// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/output.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace localservice {

void appendErrorsTo(const std::filesystem::path &file)
{
    const int log =
        _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_APPEND | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (log < 0)
        return;
    _dup2(log, _fileno(stderr));
    _close(log);
}

} // namespace localservice
