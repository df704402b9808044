// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/longpath.h"

#include <QDir>

#include <qt_windows.h>

using namespace Qt::StringLiterals;

// Nothing interprets separators and dots in such a path.
QString openableByAll(const QString &argument)
{
    if (argument.size() < MAX_PATH || QDir::isRelativePath(argument))
        return argument;
    const QString native = QDir::toNativeSeparators(QDir::cleanPath(argument));
    if (native.startsWith(uR"(\\?\)"_s))
        return native;
    return native.startsWith(uR"(\\)"_s) ? uR"(\\?\UNC)"_s + native.mid(1) : uR"(\\?\)"_s + native;
}
