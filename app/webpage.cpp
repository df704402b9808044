// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/webpage.h"

QUrl webPage(const QString &name, const ServiceEndpoints &endpoints)
{
    if (!name.startsWith(QLatin1Char('/')))
        return QUrl(name);
    const bool isService = name.startsWith(QLatin1String("/teko-server/"));
    return urlBelow(isService ? endpoints.base : endpoints.website, name);
}
