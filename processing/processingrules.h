// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QRandomGenerator64;

/// A WAV file in that folder under a name of 16 random letters and digits.
[[nodiscard]] QString temporaryWavPath(const QString &folder, QRandomGenerator64 &random);

/// Why a run cannot begin: which of the folders is missing (empty path) or cannot be written to, as
/// a sentence for the user; empty when both can be used.
[[nodiscard]] QString unusableFolder(const QString &saveFolder, const QString &tempFolder);

/// Whether a source can be handed to ffmpeg, which takes a text that is no whole path for an
/// address or a protocol if it looks like one.
[[nodiscard]] bool isFileOfThisMachine(const QString &path);

/// Why a film cannot be saved in a format with a picture, and what can be chosen instead.
[[nodiscard]] QString noPictureText(const QString &extension);

/// That a result could not be converted, and where the downloads were saved instead, if they were.
[[nodiscard]] QString unconvertedText(const QString &result, const QStringList &savedInstead);

/// That a result could not be given its name, or is no longer there.
[[nodiscard]] QString unsavedText(const QString &result);
[[nodiscard]] QString missingText(const QString &result);

/// The stored choice as the window takes it over: "none" for one that it does not offer.
[[nodiscard]] QString offeredInstrument(const QString &stored);
[[nodiscard]] QString offeredFormat(const QString &stored, bool isVideo);
