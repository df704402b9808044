// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userreply.h"

#include "service/replies.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

UserReply parseUserReply(const QString &body)
{
    const QString text = body.trimmed();
    const QVariantMap map = QJsonDocument::fromJson(text.toUtf8()).object().toVariantMap();
    const UserRecord user = UserRecord::fromMap(map);
    if (!user.hash.isEmpty())
        return {UserReply::Kind::User, user, map.value(QStringLiteral("access_token")).toString()};
    const bool isMarkup = text.startsWith(u'{') || text.startsWith(u'[') || text.startsWith(u'<');
    return {
        text.isEmpty() || isMarkup ? UserReply::Kind::Malformed : UserReply::Kind::Refusal, {}, {}};
}

QString refusalText(const QString &body)
{
    if (body.trimmed().isEmpty())
        return QCoreApplication::translate("UserReply", "The service returned an empty answer.");
    return truncatedForDisplay(body);
}
