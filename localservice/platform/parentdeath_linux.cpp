// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/parentdeath.h"

#include <csignal>
#include <sys/prctl.h>

namespace localservice {

void dieWithParent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace localservice
