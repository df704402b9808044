// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batchoptions.h"
#include "batch/batchsettings.h"
#include "batch/progressreport.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

class TestBatchOptions : public TestCase
{
    Q_OBJECT

private slots:
    void calls_data()
    {
        using Action = BatchOptions::Action;
        const Rows<Action, QString> add;
        const QString a = QFileInfo("/a").absoluteFilePath(); // on Windows with the drive
        add("/a.mp3", Action::Process, "||| " + a + ".mp3");
        add("--instrument VOCALS --format mp3 /a b.wav", Action::Process,
            "vocals|MP3|| " + a + ' ' + QDir::currentPath() + "/b.wav");
        add("/a -i bass -f webm -s out", Action::Process,
            "bass|WEBM|" + QDir::currentPath() + "/out| " + a);
        add("-- -odd.mp3", Action::Process, "||| " + QDir::currentPath() + "/-odd.mp3");
        add("/a --instrument flute", Action::Refuse, "flute");
        add("/a -f ogg", Action::Refuse, "ogg");
        add("/a --fast", Action::Refuse, "fast");
        add("/a -i", Action::Refuse, "Missing value");
        add("-i bass", Action::Refuse, "No file");
        add("/a --fast --help", Action::ShowText, "Exit code");
        add("-v", Action::ShowText, "teko-batch ");
    }

    void calls()
    {
        const auto [action, outcome] = fetchRow<BatchOptions::Action, QString>();
        const QString call = QString("teko-batch ") + QTest::currentDataTag();
        const BatchOptions options = parseBatchOptions(call.split(' '));
        QCOMPARE(options.action, action);
        if (options.action != BatchOptions::Action::Process) {
            QVERIFY2(options.text.contains(outcome), qPrintable(options.text));
            return;
        }
        QCOMPARE(QStringList({options.instrument, options.format, options.saveFolder,
                              ' ' + options.files.join(' ')})
                     .join('|'),
                 outcome);
    }

    // A shell that does so hands none on.
    void expandsPatternsOnWindows()
    {
        const QTemporaryDir folder;
        for (const char *name : {"b.WAV", "a.wav", "1.mp3", "[1].mp3"})
            QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
        const QString pattern = folder.filePath("?.wav");
        const QString bracketed = folder.filePath("[?]*");
        const QString fitsNothing = folder.filePath("*.flac");
#ifdef Q_OS_WIN
        const QStringList expected{folder.filePath("a.wav"), folder.filePath("b.WAV"),
                                   folder.filePath("[1].mp3"), fitsNothing};
#else
        const QStringList expected{pattern, bracketed, fitsNothing};
#endif
        QCOMPARE(parseBatchOptions({"teko-batch", pattern, bracketed, fitsNothing}).files,
                 expected);
    }

    void choicesLieOverTheUsersSettings()
    {
        const QTemporaryDir folder;
        QSettings user(folder.filePath("user.ini"), QSettings::IniFormat);
        QSettings call(folder.filePath("call.ini"), QSettings::IniFormat);
        user.setValue("default_instrument", "Piano");
        user.setValue("default_audio_format", "WMA");
        user.setValue("service_url", "http://s");
        BatchOptions options;
        options.format = "MP3";
        options.saveFolder = "/out";
        applyBatchOptions(options, user, call);
        const auto value = [&](const char *key) { return call.value(key).toString(); };
        QCOMPARE(QStringList({value("default_instrument"), value("default_audio_format"),
                              value("default_video_format"), value("default_path_save"),
                              value("service_url")}),
                 QStringList({"Piano", "MP3", "MP3", "/out", "http://s"}));
        QCOMPARE(user.value("default_audio_format").toString(), QStringLiteral("WMA"));
    }

    void showsNoTextThatATerminalObeys()
    {
        QCOMPARE(printable("a\x1b[2J\n\tnäh\u202e 🎵"), "a\ufffd[2J näh\ufffd 🎵");
    }
};

TEKO_TEST(TestBatchOptions)
#include "tst_batchoptions.moc"
