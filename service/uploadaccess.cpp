// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/uploadaccess.h"

#include "service/uploadreply.h"

#include <QNetworkProxy>

namespace {

/// An address with a password in it is left to Qt's manager, which knows how to show it.
bool isUpload(const QNetworkRequest &request)
{
    const QString scheme = request.url().scheme();
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && request.url().userInfo().isEmpty()
        && request.rawHeader("Content-Type").startsWith("multipart/");
}

/// Proxies are left to Qt's manager, which speaks the way each kind wants: one for plain HTTP
/// allows no tunnels as a rule.
bool isDirect(const QUrl &url)
{
    const auto proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() || proxies.constFirst().type() == QNetworkProxy::NoProxy;
}

} // namespace

QNetworkReply *UploadAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                           QIODevice *body)
{
    if (operation == PostOperation && body && isUpload(request) && isDirect(request.url()))
        return new UploadReply(request, *body, this);
    return QNetworkAccessManager::createRequest(operation, request, body);
}
