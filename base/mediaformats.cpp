// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/mediaformats.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

QString mediaSuffix(const QString &path)
{
    return QFileInfo(path).suffix().toLower();
}

const QStringList &audioSourceSuffixes()
{
    static const QStringList list{u"aac"_s, u"aif"_s, u"aiff"_s, u"m4a"_s, u"mp1"_s, u"mp3"_s,
                                  u"mp4"_s, u"ogg"_s, u"wav"_s,  u"wma"_s, u"flac"_s};
    return list;
}

const QStringList &videoSourceSuffixes()
{
    static const QStringList list{u"avi"_s, u"flv"_s, u"m4v"_s,  u"mov"_s, u"mp4"_s, u"mpg"_s,
                                  u"rm"_s,  u"vob"_s, u"webm"_s, u"wmv"_s, u"mkv"_s};
    return list;
}

const QStringList &videoOutputSuffixes()
{
    static const QStringList list{u"mov"_s, u"mp4"_s, u"mpg"_s, u"webm"_s, u"wmv"_s, u"mkv"_s};
    return list;
}

bool isVideoSource(const QString &suffix)
{
    return videoSourceSuffixes().contains(suffix);
}

bool isVideoOutput(const QString &suffix)
{
    return videoOutputSuffixes().contains(suffix);
}

const QStringList &videoFormats()
{
    static const QStringList list{u"MP4"_s, u"MKV"_s, u"MOV"_s, u"WMV"_s, u"MPG"_s, u"WEBM"_s};
    return list;
}

const QStringList &audioFormats()
{
    static const QStringList list{u"MP3"_s, u"WAV"_s, u"M4A"_s, u"AIFF"_s, u"FLAC"_s, u"WMA"_s};
    return list;
}

const QStringList &instruments()
{
    static const QStringList list{u"guitar"_s, u"vocals"_s, u"piano"_s, u"bass"_s, u"drums"_s};
    return list;
}
