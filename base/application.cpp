// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/application.h"

#include "base/hostinfo.h"
#include "base/loghandler.h"
#include "base/programdata.h"
#include "base/version.h"

#include <QCoreApplication>
#include <QDebug>
#include <QOperatingSystemVersion>
#include <QSysInfo>

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Dravo Software"));
    QCoreApplication::setApplicationName(QStringLiteral("TEKO"));
}

void setUpLogging(const ProgramData &store)
{
    if (!store.isLoggingEnabled()) {
        qInfo() << "- - - LOGGING DISABLED - - -";
        return;
    }
    qInfo() << "- - - LOGGING ENABLED - - -";
    installLogHandler([&store] { return store.defaultPathLogs(); });
}

void logSystemHeader()
{
    const HostInfo host = hostInfo();
    const auto system = QOperatingSystemVersion::current();
    qInfo() << "\n- - - - - - - - - - - - - -";
    qInfo() << "Version:" << appVersion << "[" << buildStamp << "]";
    qInfo() << "OS:"
            << QStringLiteral("%1 %2 [%3] (%4)")
                   .arg(QSysInfo::productType(), QSysInfo::productVersion(),
                        QSysInfo::currentCpuArchitecture(), QSysInfo::prettyProductName());
    qInfo() << "OS number:"
            << QStringLiteral("%1.%2.%3")
                   .arg(system.majorVersion())
                   .arg(system.minorVersion())
                   .arg(system.microVersion());
    qInfo() << "CPU:" << host.processors << "cores \\ type" << host.processorType;
    qInfo() << "- - - - - - - - - - - - - -";
    qInfo() << "Physical Memory (MB)";
    qInfo() << "Total:" << (host.totalMemory >> 20);
    qInfo() << "Available:" << (host.availableMemory >> 20);
    qInfo() << "- - - - - - - - - - - - - -\n";
}
