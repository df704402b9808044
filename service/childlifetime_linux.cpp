// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/childlifetime.h"

#include <QProcess>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

void bindLifetimeToParent(QProcess &process)
{
    process.setChildProcessModifier([parent = getpid()] {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // The parent may have died before the call above; nobody would send the signal then.
        if (getppid() != parent)
            _exit(127);
    });
}
