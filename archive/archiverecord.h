// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <QVariantList>

/// One result that the service keeps for the user.
struct ArchiveRecord
{
    QString name; ///< of the user's file, without folder and suffix
    QString deleted; ///< until when the service keeps the result, as the service words it
    QString instrument; ///< lower case
    QString extension; ///< of the result as it was saved, without the dot
    QString demoFile; ///< "no" for a whole result
    QString localFilePath; ///< the user's file, if it is on this machine
    int id = 0; ///< the service's number of the result; 0 when it sent no usable one

    [[nodiscard]] bool isDemo() const { return demoFile != QStringLiteral("no"); }

    bool operator==(const ArchiveRecord &) const = default;
};

/// The records in a reply of the service.
struct ArchiveRecords
{
    QList<ArchiveRecord> usable; ///< in the order of the reply
    QStringList problems; ///< for the log: why the first invalid ones were left out
    qsizetype leftOut = 0; ///< how many were left out
};

/// Reads a reply. A record that is no object, or lacks its name, instrument or extension, is left
/// out; numbers may come as text and short texts as numbers.
[[nodiscard]] ArchiveRecords archiveRecords(const QVariantList &reply);

/// Whether files may be named after the record: it contains no path components, device names or
/// characters that a file name cannot have.
[[nodiscard]] bool canNameFiles(const ArchiveRecord &record);
