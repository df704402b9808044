// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/mediaformats.h"
#include "service/ffmpegarguments.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

namespace {

const QString outputs = "mov mkv mp4 mpg webm wmv mp3 wav m4a aiff flac wma";
const QString videoSources = "avi flv m4v mov mp4 mpg rm vob webm wmv mkv";
const QString audioSources = "aac aif aiff m4a mp1 mp3 mp4 ogg wav wma flac";

/// One run a line, written like on a command line with short names for what recurs.
QString shown(const QStringList &arguments, const ConversionFiles &files, const QString &temporary)
{
    QString line = ' ' + arguments.join(' ') + ' ';
    const auto abbreviate = [&line](const QString &long_, const QString &short_) {
        if (!long_.isEmpty())
            line.replace(' ' + long_ + ' ', ' ' + short_ + ' ');
    };
    abbreviate(temporary, "TEMP");
    abbreviate(files.original, "ORIG");
    abbreviate(files.input, "IN");
    abbreviate(files.output, "OUT");
    abbreviate("-i ORIG -i IN -map 0:v:0 -map 1:a:0 -c:v copy -c:a aac", "REMUX");
    abbreviate("-c:v libx264 -crf 23 -preset medium -c:a aac", "H264");
    return line.trimmed();
}

QString shown(const ConversionPlan &plan, const ConversionFiles &files)
{
    const QString last = shown(plan.finalPass, files, plan.temporary);
    if (plan.temporary != (plan.firstPass.isEmpty() ? "" : files.output + ".mp4"))
        return "a strange temporary: " + plan.temporary;
    if (plan.firstPass.isEmpty())
        return last;
    return shown(plan.firstPass, files, plan.temporary) + " | " + last;
}

/// The suffix as users may write it.
QStringList spellings(const QString &suffix)
{
    return {suffix, suffix.toUpper(), suffix.left(1).toUpper() + suffix.mid(1)};
}

} // namespace

class TestFfmpegArguments : public TestCase
{
    Q_OBJECT

private slots:
    void upload_data()
    {
        const Rows<QString, QString> add;
        add("Windows Media", "wma wmv", "-i IN -y OUT");
        add("video", "avi flv m4v mov mp4 mpg rm vob webm mkv",
            "-i IN -vn -acodec pcm_s16le -ac 2 -y OUT");
        add("audio and unknown", "aac aif aiff m4a mp1 mp3 ogg wav flac opus",
            "-i IN -vn -c:a pcm_s16le -y OUT");
    }

    void upload()
    {
        const auto [suffixes, expected] = fetchRow<QString, QString>();
        for (const QString &suffix : suffixes.split(' ')) {
            for (const QString &spelling : spellings(suffix)) {
                const ConversionFiles files{"/a b/song.mp4." + spelling, "/tmp/x.wav", {}};
                QCOMPARE(shown(uploadArguments(files.input, files.output), files, {}), expected);
            }
        }
    }

    void results_data()
    {
        const Rows<QString, QString, QString, QString> add;
        const auto video = [&add](const char *suffix, const QString &codecs) {
            const QString two = "REMUX TEMP | -y -i TEMP " + codecs + " OUT";
            add(suffix, two, "REMUX OUT", two, "-y -i IN " + codecs + " OUT");
        };
        video("mov", "H264");
        video("mkv", "H264");
        video("mpg", "-c:v mpeg2video -qscale:v 2 -c:a mp2");
        video("webm", "-c:v libvpx -crf 30 -b:v 1M -c:a libvorbis");
        video("wmv", "-c:v wmv2 -c:a wmav2");
        add("mp4", "REMUX OUT", "REMUX OUT", "REMUX OUT", "-y -i IN H264 OUT");
        const QString audio = "-i IN -b:a 320k -vn OUT";
        for (const char *suffix : {"mp3", "wav", "m4a", "aiff", "flac", "wma"})
            add(suffix, audio, audio, audio, audio);
    }

    void results()
    {
        const auto [fromOther, fromSame, fromSound, fromVideo] =
            fetchRow<QString, QString, QString, QString>();
        const QString suffix = QTest::currentDataTag();
        for (const QString &source : (videoSources + ' ' + audioSources).split(' ')) {
            for (const QString &spelling : spellings(suffix)) {
                const ConversionFiles fresh{"/o/in.wav", "/o/out." + spelling,
                                            "/s/c." + source.toUpper()};
                QCOMPARE(shown(resultPlan(fresh), fresh), source == suffix ? fromSame : fromOther);
            }
        }
        for (const QString &stored : outputs.split(' ')) {
            const bool isVideo = videoOutputSuffixes().contains(stored);
            for (const QString &source : {suffix, QString("avi")}) {
                const ConversionFiles files{"/o/in." + stored.toUpper(), "/o/out." + suffix,
                                            "/s/c." + source};
                QCOMPARE(shown(archivedPlan(files), files), isVideo ? fromVideo : fromSound);
            }
        }
    }
};

TEKO_TEST_MAIN(TestFfmpegArguments)
#include "tst_ffmpegarguments.moc"
