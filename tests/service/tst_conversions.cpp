// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/mediaformats.h"
#include "service/convertingfile.h"
#include "service/ffmpegrun.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

/// What is really in a file. The length in a container's header counts the encoders' padding, so
/// sound and picture are decoded and counted.
struct Media
{
    QString codecs; ///< in the order of the streams
    int channels = 0;
    double sound = 0; ///< seconds
    double picture = 0; ///< seconds, 0 without a picture
};

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

Media probe(const QString &path)
{
    const QByteArray json =
        outputOf("ffprobe", {"-v", "error", "-of", "json", "-count_frames", "-show_streams", path});
    Media media;
    QStringList codecs;
    for (const auto &value : QJsonDocument::fromJson(json)["streams"].toArray()) {
        const QJsonObject stream = value.toObject();
        codecs << stream["codec_name"].toString();
        media.channels = qMax(media.channels, stream["channels"].toInt());
        if (stream["codec_type"].toString() == "video")
            media.picture = stream["nb_read_frames"].toString().toInt() / 25.0;
    }
    media.codecs = codecs.join(' ');
    const QByteArray samples =
        outputOf(ffmpegProgram(),
                 {"-v", "error", "-i", path, "-vn", "-f", "s8", "-ac", "1", "-ar", "8000", "-"});
    media.sound = double(samples.size()) / 8000;
    return media;
}

bool isThreeSeconds(double length)
{
    return qAbs(length - 3) <= 0.05;
}

} // namespace

/// The real ffmpeg, on sources that it makes itself.
class TestConversions : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        const QStringList sound{"-f", "lavfi", "-i", "sine=f=440:d=3:r=44100", "-ac", "2"};
        make(sound,
             {"result.wav", "song.wav", "song.mp3", "song.m4a", "song.flac", "song.ogg",
              "song.wma"});
        const QStringList picture{"-f", "lavfi", "-i", "testsrc=s=160x120:r=25:d=3"};
        make(picture + sound + QStringList{"-shortest"},
             {"clip.mp4", "clip.avi", "clip.mov", "clip.webm", "clip.wmv", "clip.mkv", "clip.mpg",
              "clip.flv"});
        make(picture, {"mute.mp4"});
    }

    void uploads_data()
    {
        addNames({"song.wav", "song.mp3", "song.m4a", "song.flac", "song.ogg", "song.wma",
                  "clip.mp4", "clip.avi", "clip.mov", "clip.webm", "clip.wmv", "clip.mkv",
                  "clip.mpg", "clip.flv"});
    }

    void uploads()
    {
        QFETCH(QString, name);
        convert(&ConvertingFile::prepareToUpload, path(name), path("upload.wav"), {});
        const Media media = probe(path("upload.wav"));
        QCOMPARE(media.codecs, "pcm_s16le");
        QCOMPARE(media.channels, 2);
        QVERIFY2(isThreeSeconds(media.sound), qPrintable(QString::number(media.sound)));
    }

    void results_data()
    {
        const Rows<QString, QString, QString> add;
        const auto row = [&add](const QString &source, const QString &suffix,
                                const QString &codecs) {
            add(source + " to " + suffix, source, suffix, codecs);
        };
        row("clip.avi", "mp4", "mpeg4 aac");
        row("clip.avi", "mkv", "h264 aac");
        row("clip.avi", "mov", "h264 aac");
        row("clip.avi", "wmv", "wmv2 wmav2");
        row("clip.avi", "mpg", "mpeg2video mp2");
        row("clip.avi", "webm", "vp8 vorbis");
        row("clip.mp4", "mp4", "h264 aac");
        row("clip.mkv", "mkv", "h264 aac");
        for (const auto &[suffix, codec] : {std::pair("mp3", "mp3"),
                                            {"wav", "pcm_s16le"},
                                            {"m4a", "aac"},
                                            {"aiff", "pcm_s16be"},
                                            {"flac", "flac"},
                                            {"wma", "wmav2"}}) {
            for (const char *source : {"song.mp3", "clip.mp4"})
                row(source, suffix, codec);
        }
        // No picture, no film.
        for (const QString &suffix : videoOutputSuffixes())
            row("song.mp3", suffix, "");
    }

    void results()
    {
        const auto [source, suffix, codecs] = fetchRow<QString, QString, QString>();
        const QString folder = path("-i %1 <b>\n🎵 \"ü\" " + QString(QTest::currentDataTag()));
        QVERIFY(QDir().mkpath(folder));
        const QString input = folder + "/r.wav." + suffix + ".wav";
        QVERIFY(QFile::copy(path("result.wav"), input));
        const QString output = folder + "/-r." + suffix;
        convert(&ConvertingFile::prepareFinal, input, output, path(source));
        QCOMPARE(filesIn(folder), codecs.isEmpty() ? QStringList() : QStringList("-r." + suffix));
        if (!codecs.isEmpty())
            check(output, codecs);
    }

    void archived_data()
    {
        const Rows<QString, QString, QString> add;
        const QStringList codecs{
            "h264 aac", "h264 aac",  "h264 aac", "wmv2 wmav2", "mpeg2video mp2", "vp8 vorbis",
            "mp3",      "pcm_s16le", "aac",      "pcm_s16be",  "flac",           "wmav2"};
        const QStringList formats = videoFormats() + audioFormats();
        for (int i = 0; i < formats.size(); ++i) {
            for (const QString input : {"song.flac", "clip.mkv"})
                add(input + " to " + formats[i], input, formats[i].toLower(), codecs[i]);
        }
    }

    void archived()
    {
        const auto [input, suffix, codecs] = fetchRow<QString, QString, QString>();
        const QString output = path(QString(QTest::currentDataTag()) + "." + suffix);
        convert(&ConvertingFile::convertFile, path(input), output, path("clip.mp4"));
        QVERIFY(QFile::exists(path(input)));
        QVERIFY(!QFile::exists(output + ".mp4"));
        check(output, codecs);
    }

    void badSources()
    {
        writeFile(path("empty.mp3"));
        writeFile(path("text.mp3"), "not a song\n");
        for (const char *name : {"mute.mp4", "empty.mp3", "text.mp3", "missing.mp3"}) {
            convert(&ConvertingFile::prepareToUpload, path(name), path("bad.wav"), {});
            QVERIFY2(!QFile::exists(path("bad.wav")), name);
        }
    }

    void anExistingResultIsNotOverwritten()
    {
        const QString kept = path("kept.mp3");
        QVERIFY(QFile::copy(path("song.mp3"), kept));
        const qint64 size = QFileInfo(kept).size();
        convert(&ConvertingFile::convertFile, path("song.flac"), kept, {});
        QCOMPARE(QFileInfo(kept).size(), size);
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    void make(const QStringList &arguments, const QStringList &names)
    {
        for (const QString &name : names) {
            QCOMPARE(QProcess::execute(ffmpegProgram(),
                                       QStringList{"-v", "error"} + arguments << path(name)),
                     0);
        }
    }

    void convert(void (ConvertingFile::*entry)(), const QString &input, const QString &output,
                 const QString &original)
    {
        ConvertingFile worker(&m_cancel, input, output, original, true);
        (worker.*entry)();
    }

    void check(const QString &output, const QString &codecs)
    {
        const Media media = probe(output);
        QCOMPARE(media.codecs, codecs);
        QVERIFY2(isThreeSeconds(media.sound), qPrintable(QString::number(media.sound)));
        if (codecs.contains(' '))
            QVERIFY2(isThreeSeconds(media.picture), qPrintable(QString::number(media.picture)));
    }

    QTemporaryDir m_folder;
    std::atomic<int> m_cancel = 0;
};

TEKO_TEST_MAIN(TestConversions)
#include "tst_conversions.moc"
