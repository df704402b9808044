// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/hostinfo.h"

#include <qt_windows.h>

HostInfo hostInfo()
{
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    return {system.dwNumberOfProcessors, system.dwProcessorType, memory.ullTotalPhys,
            memory.ullAvailPhys};
}
