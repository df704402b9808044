// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

/// Makes the system end the connection with a reset when the socket is closed.
void resetOnClose(qintptr socket);
