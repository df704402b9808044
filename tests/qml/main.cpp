// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include <QQuickStyle>
#include <QtQuick>
#include <QtQuickTest>

/// What the tests need of C++.
class Helper : public QObject
{
    Q_OBJECT

public slots:
    /// The views are tested in the program's style.
    void applicationAvailable() { QQuickStyle::setStyle("Basic"); }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->rootContext()->setContextProperty("APP_VER", "1.003");
        engine->rootContext()->setContextProperty("helper", this);
    }

    /// Drops a file on a window, as another program does.
    void drop(QWindow *window, const QUrl &file)
    {
        QMimeData data;
        data.setUrls({file});
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &enter);
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &drop);
    }
};

QUICK_TEST_MAIN_WITH_SETUP(views, Helper)
#include "main.moc"
