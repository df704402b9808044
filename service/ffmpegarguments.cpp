// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/ffmpegarguments.h"

#include "base/mediaformats.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

QStringList codecs(const QString &suffix)
{
    static const QStringList h264{u"-c:v"_s,    u"libx264"_s, u"-crf"_s, u"23"_s,
                                  u"-preset"_s, u"medium"_s,  u"-c:a"_s, u"aac"_s};
    static const QHash<QString, QStringList> table{
        {u"mov"_s, h264},
        {u"mkv"_s, h264},
        {u"mp4"_s, h264},
        {u"mpg"_s, {u"-c:v"_s, u"mpeg2video"_s, u"-qscale:v"_s, u"2"_s, u"-c:a"_s, u"mp2"_s}},
        {u"webm"_s,
         {u"-c:v"_s, u"libvpx"_s, u"-crf"_s, u"30"_s, u"-b:v"_s, u"1M"_s, u"-c:a"_s,
          u"libvorbis"_s}},
        {u"wmv"_s, {u"-c:v"_s, u"wmv2"_s, u"-c:a"_s, u"wmav2"_s}},
    };
    return table.value(suffix, {u"-c"_s, u"copy"_s});
}

/// The original's picture over the result's sound, written to a file of any container.
QStringList remux(const ConversionFiles &files, const QString &target)
{
    return {u"-i"_s,    files.original, u"-i"_s,   files.input, u"-map"_s, u"0:v:0"_s, u"-map"_s,
            u"1:a:0"_s, u"-c:v"_s,      u"copy"_s, u"-c:a"_s,   u"aac"_s,  target};
}

QStringList recode(const QString &input, const QString &output)
{
    return QStringList{u"-y"_s, u"-i"_s, input} + codecs(mediaSuffix(output)) << output;
}

ConversionPlan audioPlan(const ConversionFiles &files)
{
    return {{}, {u"-i"_s, files.input, u"-b:a"_s, u"320k"_s, u"-vn"_s, files.output}, {}};
}

ConversionPlan onePass(const ConversionFiles &files)
{
    return {{}, remux(files, files.output), {}};
}

ConversionPlan twoPasses(const ConversionFiles &files)
{
    const QString temporary = u"%1.mp4"_s.arg(files.output);
    return {remux(files, temporary), recode(temporary, files.output), temporary};
}

} // namespace

QStringList uploadArguments(const QString &input, const QString &output)
{
    const QString suffix = mediaSuffix(input);
    if (suffix == "wma"_L1 || suffix == "wmv"_L1)
        return {u"-i"_s, input, u"-y"_s, output};
    if (isVideoSource(suffix))
        return {u"-i"_s,  input,  u"-vn"_s, u"-acodec"_s, u"pcm_s16le"_s,
                u"-ac"_s, u"2"_s, u"-y"_s,  output};
    return {u"-i"_s, input, u"-vn"_s, u"-c:a"_s, u"pcm_s16le"_s, u"-y"_s, output};
}

QStringList pictureArguments(const QString &file)
{
    return {u"-i"_s,        file,   u"-map"_s, u"0:v:0"_s, u"-c"_s, u"copy"_s,
            u"-frames:v"_s, u"1"_s, u"-f"_s,   u"null"_s,  u"-"_s};
}

ConversionPlan resultPlan(const ConversionFiles &files)
{
    const QString suffix = mediaSuffix(files.output);
    if (!isVideoOutput(suffix))
        return audioPlan(files);
    const bool fits = suffix == "mp4"_L1 || suffix == mediaSuffix(files.original);
    return fits ? onePass(files) : twoPasses(files);
}

ConversionPlan archivedPlan(const ConversionFiles &files)
{
    const QString suffix = mediaSuffix(files.output);
    if (!isVideoOutput(suffix))
        return audioPlan(files);
    if (isVideoOutput(mediaSuffix(files.input)))
        return {{}, recode(files.input, files.output), {}};
    return suffix == "mp4"_L1 ? onePass(files) : twoPasses(files);
}
