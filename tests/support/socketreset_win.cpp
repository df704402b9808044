// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/socketreset.h"

#include <winsock2.h>

void resetOnClose(qintptr socket)
{
    const linger now = {1, 0};
    setsockopt(SOCKET(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char *>(&now),
               sizeof(now));
}
