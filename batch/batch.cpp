// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batch.h"

#include "account/userauth.h"
#include "base/appfolder.h"
#include "base/application.h"
#include "base/messagewatcher.h"
#include "base/programdata.h"
#include "base/temporaryfolder.h"
#include "batch/batchoptions.h"
#include "batch/batchrunner.h"
#include "batch/batchsettings.h"
#include "batch/console.h"
#include "service/serviceconnection.h"

#include <QEventLoop>
#include <QLoggingCategory>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

QtMessageHandler defaultHandler = nullptr;

void dropPlatformRemarks(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool isRemark = message.startsWith(QLatin1String("This plugin does not support "))
        || message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))
        // The manifest has chosen already.
        || message.startsWith(QLatin1String("SetProcessDpiAwarenessContext("));
    if (type != QtWarningMsg || !isRemark)
        defaultHandler(type, context, message);
}

constexpr int cannotStart = 1;
constexpr int usageError = 2;

/// Waits until it is known who is signed in. When nobody is, the service refuses the files.
/// Problems on the way, such as a service that does not start, go to standard error.
void findUser(ProgramData &store)
{
    const MessageWatcher messages;
    QObject::connect(&messages, &MessageWatcher::shown, &messages,
                     [](const QString &, const QString &text) {
                         QTextStream(stderr) << text.simplified() << Qt::endl;
                     });
    UserAuth account(store);
    QEventLoop loop;
    QObject::connect(&account, &UserAuth::signedIn, &loop, &QEventLoop::quit);
    QObject::connect(&account, &UserAuth::signedOut, &loop, &QEventLoop::quit);
    account.initialCheck();
    loop.exec();
}

int runFiles(const BatchOptions &options)
{
    const QTemporaryDir folder;
    ProgramData store(folder.filePath(QStringLiteral("call.ini")));
    applyBatchOptions(options, ProgramData::instance().settings(), store.settings());
    removeAtSuddenEnd(folder.filePath(QStringLiteral("call.ini")));
    TemporaryFolder temporaryFolder(store.defaultPathTemp());
    const ServiceConnection service(store);
    findUser(store);
    BatchRunner runner(store);
    onInterrupt(&runner, [&] { runner.interrupt(); });
    const int exitCode = runner.run(options.files);
    temporaryFolder.clear();
    return exitCode;
}

/// Logs only to the log file, if at all: standard error is for the user.
void setUpLog()
{
    const ProgramData &store = ProgramData::instance();
    if (!store.isLoggingEnabled())
        QLoggingCategory::setFilterRules(
            QStringLiteral("default.debug=false\ndefault.info=false\ndefault.critical=false"));
    setUpLogging(store);
    logSystemHeader();
}

} // namespace

void quietPlatform()
{
    defaultHandler = qInstallMessageHandler(dropPlatformRemarks);
}

int runBatch(const QStringList &arguments)
{
    const BatchOptions options = parseBatchOptions(arguments);
    if (options.action == BatchOptions::Action::ShowText) {
        QTextStream(stdout) << options.text;
        return 0;
    }
    QTextStream notes(stderr);
    if (options.action == BatchOptions::Action::Refuse) {
        notes << options.text << Qt::endl;
        return usageError;
    }
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const AppFolderOutcome home = makeAppFolder(documentsAppFolder(), localDataAppFolder());
    if (home.exitCode != 0) {
        notes << home.error << Qt::endl;
        return cannotStart;
    }
    setUpLog();
    return runFiles(options);
}
