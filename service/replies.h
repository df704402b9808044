// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// What the service's short texts mean: plain functions on values.

/// The id in the answer to an upload or re-process request; 0 means that the text is a refusal.
[[nodiscard]] int songId(const QString &body);

/// The answer to the question how long a job still takes.
struct Remains
{
    enum class Kind { Ready, Seconds, Refusal };
    Kind kind = Kind::Refusal;
    int seconds = 0; ///< for Kind::Seconds

    bool operator==(const Remains &) const = default;
};
[[nodiscard]] Remains remainsReply(const QString &body);

/// The addresses of the two results of a job; either may be empty.
struct ResultUrls
{
    QString first; ///< the instrument
    QString second; ///< the mix without it

    bool operator==(const ResultUrls &) const = default;
};
/// Empty unless the text is two parts joined by a bar.
[[nodiscard]] std::optional<ResultUrls> resultUrls(const QString &body);

/// The address of a result, which may be relative to the one that was asked; empty for none, and
/// for one that leaves encryption.
[[nodiscard]] QUrl resultUrl(const QUrl &asked, const QString &location);

/// The files that may still be processed today; -1 when the text is not a number.
[[nodiscard]] int filesLeft(const QString &body);

/// Percentage with one decimal; nothing while the total is unknown.
[[nodiscard]] std::optional<double> uploadPercent(qint64 sent, qint64 total);

/// Whole percentage that stays below 100, which only a written file may report.
/// Sizes in bytes; an expected size of -1 is unknown.
[[nodiscard]] double downloadPercent(qint64 received, qint64 total, qint64 expectedSize);

/// A text from outside, truncated if it is too long for a message box.
[[nodiscard]] QString truncatedForDisplay(const QString &text);
