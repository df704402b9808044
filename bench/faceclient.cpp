// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// faceclient empty|main       shows an empty window of the main window's size, or the main window,
//                             and prints "frame" as soon as its first frame is there
// faceclient rest SECONDS     prints how many frames the main window draws while nothing happens
// faceclient bar SCALE SECONDS prints the share of a core, in percent, that the moving bar takes
#include "app/startup.h"
#include "base/application.h"

#include <QApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <ctime>

namespace {

constexpr int settleTime = 1500;

QQuickWindow *loadWindow(QQmlApplicationEngine &engine, const QString &which)
{
    if (which == QLatin1String("empty")) {
        engine.loadData("import QtQuick\nimport QtQuick.Window\n"
                        "Window { width: 470; height: 210; visible: true }");
    } else {
        engine.load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
    }
    return qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
}

int awaitFrame(const QString &which)
{
    QQmlApplicationEngine engine;
    QObject::connect(loadWindow(engine, which), &QQuickWindow::frameSwapped, qApp, [] {
        std::puts("frame");
        std::fflush(stdout);
        std::_Exit(0);
    });
    return QApplication::exec();
}

int framesAtRest(double seconds)
{
    QQmlApplicationEngine engine;
    QQuickWindow *window = loadWindow(engine, QStringLiteral("main"));
    QMetaObject::invokeMethod(window, "setSignedIn", Q_ARG(bool, true));
    int frames = 0;
    QTimer::singleShot(settleTime, qApp, [&] {
        QObject::connect(window, &QQuickWindow::frameSwapped, qApp, [&frames] { ++frames; });
        QTimer::singleShot(int(seconds * 1000), qApp, &QCoreApplication::quit);
    });
    QApplication::exec();
    std::printf("%d\n", frames);
    return 0;
}

int movingBar(double scale, double seconds)
{
    using Clock = std::chrono::steady_clock;
    QQuickWidget view(QUrl(QStringLiteral("qrc:/qml/FileProcessing.qml")));
    view.setResizeMode(QQuickWidget::SizeRootObjectToView);
    view.resize(int(470 * scale), int(350 * scale));
    view.rootObject()->setProperty("scf", scale);
    view.rootObject()->setProperty("currentLayer", QStringLiteral("converting"));
    view.show();
    std::clock_t cpu = 0;
    Clock::time_point start;
    QTimer::singleShot(settleTime, qApp, [&] {
        cpu = std::clock();
        start = Clock::now();
        QTimer::singleShot(int(seconds * 1000), qApp, &QCoreApplication::quit);
    });
    QApplication::exec();
    const double busy = double(std::clock() - cpu) / CLOCKS_PER_SEC;
    std::printf("%.2f\n", 100 * busy / std::chrono::duration<double>(Clock::now() - start).count());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    nameApplication();
    registerBackendTypes();
    QApplication app(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    const QStringList arguments = QApplication::arguments();
    const QString what = arguments.value(1);
    if (what == QLatin1String("bar"))
        return movingBar(arguments.value(2).toDouble(), arguments.value(3).toDouble());
    if (what == QLatin1String("rest"))
        return framesAtRest(arguments.value(2).toDouble());
    return awaitFrame(what);
}
