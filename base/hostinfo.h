// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

/// Facts about this machine for the log header.
struct HostInfo
{
    uint processors = 0;
    uint processorType = 0; ///< as Windows numbers them: 8664 for x86-64, 0 when it has no number
    quint64 totalMemory = 0; ///< bytes
    quint64 availableMemory = 0; ///< bytes
};

/// Queries the system; values that it does not report stay 0.
[[nodiscard]] HostInfo hostInfo();
