// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "qml/vocabulary.h"

#include "base/mediaformats.h"

using namespace Qt::StringLiterals;

QString Vocabulary::none() const
{
    return u"none"_s;
}

QStringList Vocabulary::audioFormats() const
{
    return ::audioFormats();
}

QStringList Vocabulary::allFormats() const
{
    return videoFormats() + ::audioFormats();
}

bool Vocabulary::isBusy(const QString &layer) const
{
    static const QStringList layers{u"uploading"_s, u"processing"_s, u"downloading"_s,
                                    u"converting"_s};
    return layers.contains(layer);
}

bool Vocabulary::isAudio(const QString &format) const
{
    return ::audioFormats().contains(format.toUpper());
}
