// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"

#include "account/userauth.h"
#include "app/backendloader.h"
#include "base/appfolder.h"
#include "base/application.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "base/taskbar.h"
#include "base/version.h"
#include "service/serviceconnection.h"

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickStyle>

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

void registerBackendTypes()
{
    qmlRegisterType<BackendLoader>("backend.BackendLoader", 1, 0, "BackendLoader");
    qmlRegisterType<UserAuth>("backend.UserAuth", 1, 0, "UserAuth");
}

void openOnceSignedIn(const QObject &mainView, const QString &file)
{
    auto *backend = mainView.findChild<BackendLoader *>();
    auto *account = mainView.findChild<UserAuth *>();
    if (!backend || !account)
        return;
    const QString path = QFileInfo(file).absoluteFilePath();
    // Queued, so that the main window is shown before it hides for the file's window.
    QObject::connect(
        account, &UserAuth::signedIn, backend, [backend, path] { backend->loadFile(path); },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

int runProgram(const QStringList &arguments)
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/teko.ico")));
    // The desktop finds the program's desktop entry and icon by this name.
    QApplication::setDesktopFileName(QStringLiteral("teko"));
    prepareForWindows();
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
