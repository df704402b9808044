// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"

#include "account/userauth.h"
#include "app/appfolder.h"
#include "app/backendloader.h"
#include "app/base/hostinfo.h"
#include "app/base/loghandler.h"
#include "app/base/messageboxcustom.h"
#include "app/base/programdata.h"
#include "app/version.h"
#include "service/serviceconnection.h"

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QIcon>
#include <QOperatingSystemVersion>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickStyle>
#include <QSysInfo>

namespace {

constexpr int noMainView = -128;

int failStart(int exitCode, const QString &text)
{
    qCritical() << "main"
                << "!!! ERROR:" << text;
    MessageBoxCustom::warning(QStringLiteral("ERROR"), text);
    return exitCode;
}

int runMainView(const QStringList &arguments)
{
    QQmlApplicationEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("APP_VER"),
                                             QString::fromLatin1(appVersion));
    engine.load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
    if (engine.rootObjects().isEmpty()) {
        return failStart(noMainView,
                         QStringLiteral("RootObjects of QQmlApplicationEngine is empty. "
                                        "We cannot load main.qml"));
    }
    if (arguments.size() > 1)
        openOnceSignedIn(*engine.rootObjects().constFirst(), arguments.at(1));
    return QCoreApplication::exec();
}

} // namespace

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Dravo Software"));
    QCoreApplication::setApplicationName(QStringLiteral("TEKO"));
}

void registerBackendTypes()
{
    qmlRegisterType<BackendLoader>("backend.BackendLoader", 1, 0, "BackendLoader");
    qmlRegisterType<UserAuth>("backend.UserAuth", 1, 0, "UserAuth");
}

void setUpLogging(ProgramData &store)
{
    if (!store.settings().value("APP_LOGFILE_ENABLED").toBool()) {
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

void openOnceSignedIn(const QObject &mainView, const QString &file)
{
    auto *backend = mainView.findChild<BackendLoader *>();
    auto *account = mainView.findChild<UserAuth *>();
    if (!backend || !account)
        return;
    const QString path = QFileInfo(file).absoluteFilePath();
    // Queued, so that the main window stands before it hides for the file's window.
    QObject::connect(
        account, &UserAuth::signedIn, backend, [backend, path] { backend->loadFile(path); },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

int runProgram(const QStringList &arguments)
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/teko.ico")));
    // The desktop finds the program's entry, and its icon, by this name.
    QApplication::setDesktopFileName(QStringLiteral("teko"));
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    ProgramData &store = ProgramData::instance();
    setUpLogging(store);
    logSystemHeader();
    const AppFolderOutcome folder = makeAppFolder(documentsAppFolder(), localDataAppFolder());
    if (folder.exitCode != 0)
        return failStart(folder.exitCode, folder.error);
    const ServiceConnection service(store);
    return runMainView(arguments);
}
