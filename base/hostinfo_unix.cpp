// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/hostinfo.h"

#include <QString>
#include <QSysInfo>

#include <unistd.h>

namespace {

quint64 known(long value)
{
    return value > 0 ? quint64(value) : 0;
}

} // namespace

HostInfo hostInfo()
{
    const quint64 page = known(sysconf(_SC_PAGESIZE));
    const bool isX64 = QSysInfo::currentCpuArchitecture() == QLatin1String("x86_64");
    return {uint(known(sysconf(_SC_NPROCESSORS_ONLN))), isX64 ? 8664u : 0u,
            known(sysconf(_SC_PHYS_PAGES)) * page, known(sysconf(_SC_AVPHYS_PAGES)) * page};
}
