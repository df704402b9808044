// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/mediaformats.h"
#include "service/convertingfile.h"
#include "service/pictureprobe.h"
#include "tests/support/files.h"
#include "tests/support/madesources.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTemporaryDir>

/// The real ffmpeg, on sources that it makes itself.
class TestConversions : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const char *name : {"result.wav", "song.mp3", "song.wma", "song.flac", "clip.mp4",
                                 "clip.wmv", "clip.mkv"})
            QVERIFY(makeSource(path(name), 2));
        QVERIFY(makeSource(path("sound.mp3"), 2)
                && QFile::rename(path("sound.mp3"), path("voice.mp4")));
        writeFile(path("text.mp3"), "not a song\n");
    }

    void uploads_data() { addNames({"song.mp3", "song.wma", "clip.mp4", "clip.wmv", "voice.mp4"}); }

    void uploads()
    {
        QFETCH(QString, name);
        convert(&ConvertingFile::prepareToUpload, path(name), path("upload.wav"), {});
        QCOMPARE(probed(path("upload.wav")).mid(0, 2), QStringList({"pcm_s16le", "audio"}));
    }

    void badSources()
    {
        for (const char *name : {"text.mp3", "missing.mp3"}) {
            convert(&ConvertingFile::prepareToUpload, path(name), path("bad.wav"), {});
            QVERIFY2(!QFile::exists(path("bad.wav")), name);
        }
    }

    void pictures()
    {
        for (const auto &[name, hasPicture] :
             {std::pair("clip.mkv", true), {"voice.mp4", false}, {"missing.mp4", false}}) {
            PictureProbe probe(&m_cancel, path(name));
            QSignalSpy done(&probe, &PictureProbe::done);
            probe.probe();
            QCOMPARE(done, QList<QVariantList>({{hasPicture}}));
        }
    }

    void results_data()
    {
        const Rows<QString, QString> add;
        add("mp4", "mp4", "h264 video aac audio");
        add("mkv", "mkv", "h264 video aac audio");
        add("mov", "mov", "h264 video aac audio");
        add("wmv", "wmv", "wmv2 video wmav2 audio");
        add("mpg", "mpg", "mpeg2video video mp2 audio");
        add("webm", "webm", "vp8 video vorbis audio");
        add("mp3", "mp3", "mp3 audio");
        add("m4a", "m4a", "aac audio");
        add("aiff", "aiff", "pcm_s16be audio");
        add("flac", "flac", "flac audio");
        add("wma", "wma", "wmav2 audio");
    }

    /// Fresh ones, and stored audio and video results, under a name with special characters.
    void results()
    {
        const auto [suffix, streams] = fetchRow<QString, QString>();
        const QString folder = path("-i %1 <b>\n🎵 \"ü\" " + suffix);
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(path("result.wav"), folder + "/r.wav"));
        convert(&ConvertingFile::prepareFinal, folder + "/r.wav", folder + "/-r." + suffix,
                path("clip.mp4"));
        QVERIFY(!QFile::exists(folder + "/r.wav"));
        for (const char *stored : {"song.flac", "clip.mkv"})
            convert(&ConvertingFile::convertFile, path(stored),
                    folder + "/of " + stored + '.' + suffix, path("clip.mp4"));
        const QStringList made = filesIn(folder);
        QCOMPARE(made.size(), 3);
        for (const QString &name : made) {
            const QStringList facts = probed(folder + '/' + name);
            QVERIFY2(!facts.isEmpty() && qAbs(facts.constLast().toDouble() - 2) < 0.2,
                     qPrintable(name));
            QStringList found = facts.mid(0, facts.size() - 1);
            QCOMPARE(found.join(' '), streams);
        }
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    void convert(void (ConvertingFile::*entry)(), const QString &input, const QString &output,
                 const QString &original)
    {
        ConvertingFile worker(&m_cancel, input, output, original, true);
        (worker.*entry)();
    }

    QTemporaryDir m_folder;
    std::atomic<int> m_cancel = 0;
};

TEKO_TEST(TestConversions)
#include "tst_conversions.moc"
