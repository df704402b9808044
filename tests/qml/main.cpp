// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/testmain.h"

#include <QApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QtQuickTest>

/// Lets a test fill the root context as the program does.
class RootContext : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        m_context = engine->rootContext();
        set("rootContext", QVariant::fromValue(this));
    }
    void set(const QString &name, const QVariant &value)
    {
        m_context->setContextProperty(name, value);
    }

private:
    QQmlContext *m_context = nullptr;
};

// The views are tested as the program shows them: in its style and out of its resources.
int main(int argc, char **argv)
{
    const ScratchHome home;
    QQuickStyle::setStyle("Basic");
    const QApplication app(argc, argv);
    RootContext context;
    return quick_test_main_with_setup(argc, argv, "views", TEKO_QML_TESTS, &context);
}

#include "main.moc"
