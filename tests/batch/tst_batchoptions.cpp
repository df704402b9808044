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
        add("/a.mp3", Action::Process, "||| /a.mp3");
        add("--instrument VOCALS --format mp3 /a b.wav", Action::Process,
            "vocals|MP3|| /a " + QDir::currentPath() + "/b.wav");
        add("/a -i bass -f webm -s out", Action::Process,
            "bass|WEBM|" + QDir::currentPath() + "/out| /a");
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

    void barOnlyGrowsAndNeverWraps()
    {
        const QList<BatchProgress> stages{
            {"converting", 0, 0, 0},      {"uploading", 0, 0, 0},      {"uploading", 100, 0, 0},
            {"processing", 100, 0, 300},  {"processing", 100, 0, 2},   {"downloading", 100, 0, 0},
            {"downloading", 100, 100, 0}, {"converting", 100, 100, 0}, {"success", 100, 100, 0}};
        qsizetype filled = -1;
        for (const BatchProgress &progress : stages) {
            const QString bar = progressBar(progress, QString(200, 'n'), 79);
            QCOMPARE(bar.size(), 79);
            QVERIFY2(bar.count('#') >= filled, qPrintable(bar));
            QVERIFY(bar.contains(stageText(progress)));
            filled = bar.count('#');
        }
        QCOMPARE(filled, 24);
    }
};

TEKO_TEST(TestBatchOptions)
#include "tst_batchoptions.moc"
