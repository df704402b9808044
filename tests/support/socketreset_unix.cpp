// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/socketreset.h"

#include <sys/socket.h>

void resetOnClose(qintptr socket)
{
    const linger now = {1, 0};
    setsockopt(int(socket), SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}
