// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// Makes a media file with the real ffmpeg: two tones with overtones, and noise, in stereo, under a
/// test picture when the suffix is a video's. True when it was made.
[[nodiscard]] inline bool makeSource(const QString &path, int seconds)
{
    const QString length = QString::number(seconds);
    QStringList arguments{"-v", "error", "-nostdin", "-y"};
    const auto addInput = [&](const QString &filter) {
        arguments << "-f"
                  << "lavfi"
                  << "-i" << filter;
    };
    if (path.endsWith("mp4") || path.endsWith("mkv") || path.endsWith("wmv"))
        addInput("testsrc=size=160x120:rate=15:duration=" + length);
    addInput("aevalsrc=0.4*sin(440*2*PI*t+sin(440*2*PI*t))+0.1*random(0)"
             "|0.4*sin(110*2*PI*t+sin(110*2*PI*t))+0.1*random(1)"
             ":s=44100:d="
             + length);
    return QProcess::execute("ffmpeg", arguments << "-shortest" << path) == 0;
}

/// What ffprobe says of a file: one line per stream, "codec_type,codec_name", then the duration.
[[nodiscard]] inline QStringList probed(const QString &path)
{
    QProcess probe;
    probe.start("ffprobe",
                {"-v", "error", "-show_entries", "stream=codec_type,codec_name:format=duration",
                 "-of", "default=noprint_wrappers=1:nokey=1", path});
    probe.waitForFinished();
    return QString::fromUtf8(probe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}
