// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// The command lines of ffmpeg. Everything is decided by lower-cased suffixes of absolute paths.

/// The files of one conversion.
struct ConversionFiles
{
    QString input; ///< what is converted: a downloaded WAV or a stored result
    QString output; ///< its suffix selects the format
    QString original; ///< the user's file; source of the picture when the output is a video
};

/// One or two runs of ffmpeg that make one output.
struct ConversionPlan
{
    QStringList firstPass; ///< writes the temporary; empty when one run is enough
    QStringList finalPass; ///< writes the output
    QString temporary; ///< the file between the two runs; empty when there is none

    bool operator==(const ConversionPlan &) const = default;
};

/// Converts any source to the WAV that is uploaded.
[[nodiscard]] QStringList uploadArguments(const QString &input, const QString &output);

/// Reads the first video frame of a file; fails when there is none. Writes nothing.
[[nodiscard]] QStringList pictureArguments(const QString &file);

/// Converts a downloaded result WAV to the chosen format.
[[nodiscard]] ConversionPlan resultPlan(const ConversionFiles &files);

/// Converts a result that is stored on disk to another format.
[[nodiscard]] ConversionPlan archivedPlan(const ConversionFiles &files);
