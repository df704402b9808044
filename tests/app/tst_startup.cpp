// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTest>

/// The start-up without the views, which this test leaves out of its resources.
class TestStartUp : public TestCase
{
    Q_OBJECT

private slots:
    /// Each start that cannot succeed says why and has its own exit code.
    void failingStarts_data()
    {
        QTest::addColumn<QString>("blocked");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("text");
        QTest::newRow("no folder")
            << "Documents .local" << -104 << "Couldn't create application documents folder";
        QTest::newRow("no main view")
            << "" << -128
            << "RootObjects of QQmlApplicationEngine is empty. We cannot load main.qml";
    }

    void failingStarts()
    {
        QFETCH(QString, blocked);
        QFETCH(int, exitCode);
        QFETCH(QString, text);
        const QTemporaryDir home;
        const QByteArray before = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("TEKO_SERVICE_URL", "http://127.0.0.1:9");
        QDir(home.path()).mkpath("Documents/TEKO");
        for (const QString &name : blocked.split(' ', Qt::SkipEmptyParts)) {
            QDir(home.filePath(name)).removeRecursively();
            QFile file(home.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        RecordedMessages messages;
        if (exitCode == -128) {
            QTest::ignoreMessage(QtWarningMsg, "QQmlApplicationEngine failed to load component");
            QTest::ignoreMessage(QtWarningMsg, "qrc:/qml/main.qml: No such file or directory");
        }
        QCOMPARE(runProgram({"teko"}), exitCode);
        QCOMPARE(messages.texts().size(), 1);
        QVERIFY2(isLike(messages.texts().constFirst(), "ERROR: " + text),
                 qPrintable(messages.texts().constFirst()));
        qputenv("HOME", before);
    }
};

TEKO_TEST_MAIN(TestStartUp)
#include "tst_startup.moc"
