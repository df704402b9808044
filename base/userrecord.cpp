// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/userrecord.h"

UserRecord UserRecord::fromMap(const QVariantMap &map)
{
    const auto text = [](const QVariantMap &from, const QString &key) {
        return from.value(key).toString();
    };
    const auto number = [](const QVariantMap &from, const QString &key) {
        return qint32(from.value(key).toInt());
    };
    const QVariantMap plan = map.value(QStringLiteral("subscription")).toMap();
    UserRecord user;
    user.userId = number(map, QStringLiteral("user_id"));
    user.name = text(map, QStringLiteral("name"));
    user.email = text(map, QStringLiteral("email"));
    user.hash = text(map, QStringLiteral("hash"));
    user.subscription = {
        number(plan, QStringLiteral("id")),   text(plan, QStringLiteral("added")),
        text(plan, QStringLiteral("period")), text(plan, QStringLiteral("version")),
        text(plan, QStringLiteral("type")),   number(plan, QStringLiteral("expired")),
    };
    return user;
}
