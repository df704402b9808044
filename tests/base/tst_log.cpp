// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/loghandler.h"
#include "base/logline.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDebug>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <vector>

class TestLog : public TestCase
{
    Q_OBJECT

private slots:
    void linesByType_data()
    {
        const QString font =
            "QFont::setPointSizeF: Point size <= 0 (0.000000), must be greater than 0";
        const Rows<QtMsgType, QByteArray, QString, QString> add;
        add("the program's debug", QtDebugMsg, "default", "a", "D: a");
        add("a view's console.log", QtDebugMsg, "qml", "a", "QML: a");
        add("info", QtInfoMsg, "qml", "a", "a");
        add("warning", QtWarningMsg, "default", "a", "Warning: a");
        add("critical", QtCriticalMsg, "default", "%1", "Critical: %1");
        add("fatal", QtFatalMsg, "default", "", "Fatal: ");
        add("the font noise", QtWarningMsg, "default", font, QString());
        add("a longer font warning", QtWarningMsg, "default", font + ".", "Warning: " + font + ".");
    }

    void linesByType()
    {
        const auto [type, category, message, line] =
            fetchRow<QtMsgType, QByteArray, QString, QString>();
        const auto actual = logLine(type, category.constData(), message);
        QCOMPARE(actual.has_value(), !line.isNull());
        QCOMPARE(actual.value_or(QString()), line);
    }

    void fileNameIsNotZeroFilled()
    {
        QCOMPARE(logFileName(QDateTime(QDate(2025, 4, 7), QTime(9, 5, 3))),
                 "log_4_7_2025_9_5_3.txt");
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
        qDebug("LOG_CLOSE");
        qInfo("dropped");
        qInstallMessageHandler(before);

        const QStringList names = filesIn(folder.path());
        QCOMPARE(names.size(), 1);
        const QList<QByteArray> lines = readFile(folder.filePath(names.constFirst())).split('\n');
        QCOMPARE(lines.constFirst(), QByteArray("first"));
        QCOMPARE(lines.count(QByteArray(80, 'x')), 2000);
        QVERIFY(lines.contains("D: before the end"));
        QVERIFY(!lines.contains("dropped"));
        QVERIFY(!lines.contains("D: LOG_CLOSE"));
        QCOMPARE(lines.constLast(), QByteArray());
    }
};

TEKO_TEST(TestLog)
#include "tst_log.moc"
