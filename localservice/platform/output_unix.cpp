// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/output.h"

#include <fcntl.h>
#include <unistd.h>

namespace localservice {

void appendErrorsTo(const std::filesystem::path &file)
{
    const int log = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (log < 0)
        return;
    dup2(log, STDERR_FILENO);
    close(log);
}

} // namespace localservice
