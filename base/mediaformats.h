// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// The suffix lists that decide what a file is. Suffixes are lower case, formats upper case as the
/// views show them.

/// The lower-cased suffix of a path, without the dot.
[[nodiscard]] QString mediaSuffix(const QString &path);

/// Suffixes offered when the user chooses a source file; "mp4" is in both lists.
[[nodiscard]] const QStringList &audioSourceSuffixes();
[[nodiscard]] const QStringList &videoSourceSuffixes();

/// Suffixes of results with a picture, a subset of the source suffixes.
[[nodiscard]] const QStringList &videoOutputSuffixes();

/// Both take a lower-cased suffix.
[[nodiscard]] bool isVideoSource(const QString &suffix);
[[nodiscard]] bool isVideoOutput(const QString &suffix);

/// The formats a result may be asked for, in the order of the menus.
[[nodiscard]] const QStringList &videoFormats();
[[nodiscard]] const QStringList &audioFormats();

/// What can be isolated, lower case as sent to the service, in the order of the picker.
[[nodiscard]] const QStringList &instruments();
