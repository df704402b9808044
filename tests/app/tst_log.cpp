// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/base/loghandler.h"
#include "app/base/logline.h"
#include "tests/support/testmain.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <vector>

class TestLog : public TestCase
{
    Q_OBJECT

private slots:
    void linesByType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("category");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("line");
        const QString font = QStringLiteral(
            "QFont::setPointSizeF: Point size <= 0 (0.000000), must be greater than 0");
        const auto row = [](const char *name, QtMsgType type, const char *category,
                            const QString &message, const QString &line) {
            QTest::newRow(name) << int(type) << QByteArray(category) << message << line;
        };
        row("the program's debug", QtDebugMsg, "default", "a", "D: a");
        row("a view's console.log", QtDebugMsg, "qml", "a", "QML: a");
        row("a category that only begins like it", QtDebugMsg, "qml.x", "a", "D: a");
        row("info", QtInfoMsg, "qml", "a", "a");
        row("warning", QtWarningMsg, "default", "a", "Warning: a");
        row("critical", QtCriticalMsg, "default", "%1", "Critical: %1");
        row("fatal", QtFatalMsg, "default", "", "Fatal: ");
        row("the font noise", QtWarningMsg, "default", font, QString());
        row("the font noise as another type", QtCriticalMsg, "default", font, "Critical: " + font);
        row("a longer font warning", QtWarningMsg, "default", font + ".", "Warning: " + font + ".");
    }

    void linesByType()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, category);
        QFETCH(QString, message);
        QFETCH(QString, line);
        const auto actual = logLine(QtMsgType(type), category.constData(), message);
        QCOMPARE(actual.has_value(), !line.isNull());
        QCOMPARE(actual.value_or(QString()), line);
    }

    void fileNameIsNotZeroFilled()
    {
        QCOMPARE(logFileName(QDateTime(QDate(2025, 4, 7), QTime(9, 5, 3))),
                 QStringLiteral("log_4_7_2025_9_5_3.txt"));
    }

    /// Everything the process-wide handler does, in the only order in which one process can see it.
    void oneFileTakesAllThreadsUntilItIsClosed()
    {
        const QTemporaryDir folder;
        const QtMessageHandler before = qInstallMessageHandler(nullptr);
        installLogHandler([&] { return folder.path(); });
        qInfo("first");
        std::vector<std::unique_ptr<QThread>> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back(QThread::create([] {
                for (int line = 0; line < 250; ++line)
                    qInfo("%s", QByteArray(80, 'x').constData());
            }));
            threads.back()->start();
        }
        qDebug("before the end");
        for (const auto &thread : threads)
            thread->wait();
        threads.clear();
        threads.emplace_back(QThread::create([] {
            for (int line = 0; line < 250; ++line)
                qInfo("late");
        }));
        threads.back()->start();
        qDebug("LOG_CLOSE");
        threads.back()->wait();
        qInfo("dropped");
        qInstallMessageHandler(before);

        const QStringList names = QDir(folder.path()).entryList(QDir::Files);
        QCOMPARE(names.size(), 1);
        QFile file(folder.filePath(names.constFirst()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().split('\n');
        QCOMPARE(lines.constFirst(), QByteArray("first"));
        QCOMPARE(lines.count(QByteArray(80, 'x')), 2000);
        QVERIFY(lines.contains("D: before the end"));
        QVERIFY(!lines.contains("dropped"));
        QVERIFY(!lines.contains("D: LOG_CLOSE"));
        QCOMPARE(lines.constLast(), QByteArray());
    }
};

TEKO_TEST_MAIN(TestLog)
#include "tst_log.moc"
