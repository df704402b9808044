// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"
#include "tests/support/files.h"
#include "tests/support/recordedmessages.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

/// The start-up without the views, which this test leaves out of its resources.
class TestStartUp : public TestCase
{
    Q_OBJECT

private slots:
    /// Each start that cannot succeed says why and has its own exit code.
    void failingStarts_data()
    {
        const Rows<QString, int, QString> add;
        add("no folder", "Documents .local", -104, "Couldn't create application documents folder");
        add("no main view", "", -128,
            "RootObjects of QQmlApplicationEngine is empty. We cannot load main.qml");
    }

    void failingStarts()
    {
        const auto [blocked, exitCode, text] = fetchRow<QString, int, QString>();
        const QTemporaryDir home;
        const QByteArray before = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("TEKO_SERVICE_URL", "http://127.0.0.1:9");
        QDir(home.path()).mkpath("Documents/TEKO");
        for (const QString &name : blocked.split(' ', Qt::SkipEmptyParts)) {
            QDir(home.filePath(name)).removeRecursively();
            writeFile(home.filePath(name));
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
