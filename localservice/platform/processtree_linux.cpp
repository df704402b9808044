// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/processtree.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace localservice {

namespace {

// The file lists process ids separated by spaces. False when the system has no such file.
bool killListed()
{
    const int list = open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC);
    if (list < 0)
        return false;
    char bytes[512];
    pid_t number = 0;
    for (ssize_t got = read(list, bytes, sizeof bytes); got > 0;
         got = read(list, bytes, sizeof bytes)) {
        for (ssize_t i = 0; i < got; ++i) {
            if (bytes[i] >= '0' && bytes[i] <= '9') {
                number = number * 10 + (bytes[i] - '0');
                continue;
            }
            if (number > 0)
                kill(number, SIGKILL);
            number = 0;
        }
    }
    close(list);
    return true;
}

} // namespace

void renameProcess(const char *name)
{
    prctl(PR_SET_NAME, name);
}

void dieWithParent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void adoptOrphans()
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void killChildren()
{
    // Each round finds the children of those that ended in the round before.
    while (killListed()) {
        if (waitpid(-1, nullptr, 0) < 0 && errno != EINTR)
            return;
    }
}

} // namespace localservice
