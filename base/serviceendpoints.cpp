// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/serviceendpoints.h"

QUrl urlBelow(const QUrl &base, const QString &path)
{
    QUrl url = base;
    if (!url.isEmpty())
        url.setPath(url.path() + path);
    return url;
}

QUrl ServiceEndpoints::operation(const QString &path) const
{
    return urlBelow(base, QLatin1String("/teko-server/") + path);
}
