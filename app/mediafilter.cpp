// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/mediafilter.h"

#include "base/mediaformats.h"

namespace {

QString openEntry(const QString &label, const QStringList &extensions)
{
    return label + QStringLiteral(" (*.") + extensions.join(QStringLiteral(" *."));
}

} // namespace

QString mediaFileFilter()
{
    const QStringList entries{
        openEntry(QStringLiteral("All Openable Files"),
                  audioSourceSuffixes() + videoSourceSuffixes()),
        openEntry(QStringLiteral("Audio Files"), audioSourceSuffixes()),
        openEntry(QStringLiteral("Video Files"), videoSourceSuffixes()),
    };
    return entries.join(QStringLiteral(");;\n")) + QLatin1Char(')');
}
