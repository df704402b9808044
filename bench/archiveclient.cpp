// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archive.h"
#include "base/programdata.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPropertyAnimation>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

QQuickItem *listOf(QQuickItem *item)
{
    if (item->inherits("QQuickListView"))
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = listOf(child))
            return found;
    }
    return nullptr;
}

struct Motion
{
    double framesPerSecond;
    qint64 longestFrame; ///< milliseconds
};

/// Moves the list by that many pixels a second.
Motion scrolled(Archive &window, int pixelsPerSecond)
{
    constexpr int seconds = 4;
    int frames = 0;
    qint64 longest = 0;
    QElapsedTimer frame;
    QObject counter;
    QObject::connect(window.quickWindow(), &QQuickWindow::afterRendering, &counter, [&] {
        ++frames;
        longest = qMax(longest, frame.restart());
    });
    QPropertyAnimation motion(listOf(window.rootObject()), "contentY");
    motion.setStartValue(0.0);
    motion.setEndValue(double(pixelsPerSecond) * seconds);
    motion.setDuration(seconds * 1000);
    QEventLoop loop;
    QObject::connect(&motion, &QPropertyAnimation::finished, &loop, &QEventLoop::quit);
    QElapsedTimer total;
    total.start();
    frame.start();
    motion.start();
    loop.exec();
    return {frames * 1000.0 / double(total.elapsed()), longest};
}

} // namespace

/// Usage: archiveclient SERVICE-URL. Lists the archive of that service and prints in one line: the
/// milliseconds from the request to the list and to the list's first frame, and for three speeds of
/// scrolling the frames a second and the milliseconds of the longest frame.
int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QUrl service(app.arguments().value(1));
    const QTemporaryDir folder;
    ProgramData store(folder.filePath(QStringLiteral("teko.ini")));
    store.settings().setValue(QStringLiteral("default_path_save"), folder.path());
    store.setEndpointSource([&] { return ServiceEndpoints{service, service, {}}; });
    Archive window(store);
    QTextStream out(stdout);

    QElapsedTimer time;
    time.start();
    window.openWindow();
    out << time.elapsed();
    QEventLoop loop;
    QObject::connect(window.quickWindow(), &QQuickWindow::afterRendering, &loop, &QEventLoop::quit);
    loop.exec();
    out << ' ' << time.elapsed();
    for (const int speed : {500, 2000, 8000}) {
        const Motion motion = scrolled(window, speed);
        out << ' ' << motion.framesPerSecond << ' ' << motion.longestFrame;
    }
    out << Qt::endl;
    return 0;
}
