// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/connectivity.h"

#include "service/textreply.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

bool online(QNetworkAccessManager &network, const QUrl &url)
{
    QPointer<QNetworkReply> reply(network.get(QNetworkRequest(url)));
    const bool isOnline = waitForFinished(reply) && reply->error() == QNetworkReply::NoError;
    if (reply)
        reply->deleteLater();
    return isOnline;
}
