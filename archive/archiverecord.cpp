// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archiverecord.h"

#include <QDir>
#include <QVariantMap>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maxLoggedProblems = 20;

QString textOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return value.toString();
    default:
        return {};
    }
}

/// A positive whole number; 0 for anything else.
int idOf(const QVariant &value)
{
    bool isNumber = false;
    const double number = textOf(value).toDouble(&isNumber);
    const bool isId = isNumber && number >= 1 && number <= std::numeric_limits<int>::max();
    return isId && number == double(int(number)) ? int(number) : 0;
}

ArchiveRecord recordOf(const QVariantMap &map)
{
    return {textOf(map.value(u"name"_s)),       textOf(map.value(u"deleted"_s)),
            textOf(map.value(u"instrument"_s)), textOf(map.value(u"extension"_s)),
            textOf(map.value(u"demoFile"_s)),   textOf(map.value(u"local_file_path"_s)),
            idOf(map.value(u"ai_id"_s))};
}

/// The first required key that is missing; empty when the record has all of them.
QString missingKey(const ArchiveRecord &record)
{
    if (record.name.isEmpty())
        return u"name"_s;
    if (record.instrument.isEmpty())
        return u"instrument"_s;
    return record.extension.isEmpty() ? u"extension"_s : QString();
}

/// Whether Windows treats the name as a device, with any suffix and in any case.
bool isDeviceName(const QString &part)
{
    const QString base = part.section(u'.', 0, 0).trimmed().toUpper();
    if (base.size() == 4 && base[3].isDigit())
        return base.startsWith(u"COM"_s) || base.startsWith(u"LPT"_s);
    static const QStringList devices{u"CON"_s, u"PRN"_s, u"AUX"_s, u"NUL"_s};
    return devices.contains(base);
}

bool isForbidden(QChar c)
{
    // The last ones are invalid only in Windows names; elsewhere songs are named like that.
    static const bool isWindows = QDir::separator() == u'\\';
    return c.category() == QChar::Other_Control || c == u'/' || c == u'\\'
        || (isWindows && u":*?\"<>|"_s.contains(c));
}

/// Whether a file name may begin with it.
bool isPlainBeginning(const QString &part)
{
    const bool hasDrive = part.size() > 1 && part[0].isLetter() && part[1] == u':';
    return part != u"."_s && part != u".."_s && !hasDrive && !isDeviceName(part);
}

bool isPlainExtension(const QString &extension)
{
    return std::ranges::all_of(extension,
                               [](QChar c) { return c.unicode() < 128 && c.isLetterOrNumber(); });
}

} // namespace

ArchiveRecords archiveRecords(const QVariantList &reply)
{
    ArchiveRecords records;
    for (const QVariant &item : reply) {
        const ArchiveRecord record = recordOf(item.toMap());
        const QString missing = missingKey(record);
        if (missing.isEmpty()) {
            records.usable << record;
            continue;
        }
        ++records.leftOut;
        if (records.problems.size() < maxLoggedProblems)
            records.problems << u"\"%1\" has no usable \"%2\""_s.arg(record.name.left(80), missing);
    }
    return records;
}

bool canNameFiles(const ArchiveRecord &record)
{
    // Files are named "vocals - Song.mp3": only the instrument can be mistaken for a drive or a
    // device.
    return isPlainBeginning(record.instrument) && isPlainExtension(record.extension)
        && std::ranges::none_of(record.instrument + record.name, isForbidden);
}
