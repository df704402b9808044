// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/testmain.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>

ScratchHome::ScratchHome()
{
#ifdef Q_OS_WIN
    // Windows lends a program no other user folders: these are the real ones.
    if (qEnvironmentVariableIsEmpty("TEKO_TESTS_MAY_USE_MY_FOLDERS"))
        qFatal("The tests would work in your own folders; scripts/try-tests.sh lends them others.");
#endif
    qputenv("HOME", QFile::encodeName(path()));
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QDir(path()).mkpath(QStringLiteral("Documents"));
}

void TestCase::init()
{
    // The offscreen platform says so of every window that is sized or raised.
    static const QRegularExpression unexpected(
        QStringLiteral("^(?!This plugin does not support )"));
    QTest::failOnWarning(unexpected);
}

bool isLike(const QString &text, const QString &pattern)
{
    const QString form =
        QRegularExpression::escape(pattern).replace(QLatin1String("\\*"), QLatin1String(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(form),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

namespace {

struct Test
{
    QByteArray name;
    QObject *(*make)();
};

QList<Test> &tests()
{
    static QList<Test> list;
    return list;
}

} // namespace

int registerTest(const char *name, QObject *(*make)())
{
    tests().append({name, make});
    return int(tests().size());
}

int main(int argc, char **argv)
{
    const ScratchHome home;
    QCoreApplication::setOrganizationName(QStringLiteral("Dravo Software"));
    QCoreApplication::setApplicationName(QStringLiteral("TEKO"));
    const QApplication app(argc, argv);
    const QByteArray wanted = qgetenv("TEKO_TEST_CLASS");
    int failures = 0;
    for (const Test &test : std::as_const(tests())) {
        if (!wanted.isEmpty() && wanted != test.name)
            continue;
        QStringList arguments = app.arguments();
#ifdef Q_OS_WIN
        // What it prints reaches no pipe.
        if (arguments.size() == 1)
            arguments << QStringLiteral("-o") << QString::fromLatin1(test.name + ".txt,txt");
#endif
        const std::unique_ptr<QObject> object(test.make());
        failures += QTest::qExec(object.get(), arguments);
    }
    return failures;
}
