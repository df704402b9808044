// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QRandomGenerator64;

/// The path of a WAV file in that folder, named with 16 random letters and digits.
[[nodiscard]] QString temporaryWavPath(const QString &folder, QRandomGenerator64 &random);

/// An error message when a folder is missing (empty path) or not writable; empty when both can be
/// used.
[[nodiscard]] QString unusableFolder(const QString &saveFolder, const QString &tempFolder);

/// Whether a source is an absolute path of an existing file. ffmpeg would open other strings as
/// URLs or protocols.
[[nodiscard]] bool isFileOfThisMachine(const QString &path);

/// Explains that a source without a picture cannot be saved as a video, and what to choose instead.
[[nodiscard]] QString noPictureText(const QString &extension);

/// Reports that a result could not be converted, and where the downloads were saved instead, if so.
[[nodiscard]] QString unconvertedText(const QString &result, const QStringList &savedInstead);

/// Reports that a result could not get its name, or no longer exists.
[[nodiscard]] QString unsavedText(const QString &result);
[[nodiscard]] QString missingText(const QString &result);

/// The stored choice, or "none" for one that the window does not offer.
[[nodiscard]] QString offeredInstrument(const QString &stored);
[[nodiscard]] QString offeredFormat(const QString &stored, bool isVideo);
