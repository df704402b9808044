// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/uploadaccess.h"

#include "service/uploadreply.h"

namespace {

bool isUpload(const QNetworkRequest &request)
{
    const QString scheme = request.url().scheme();
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && request.rawHeader("Content-Type").startsWith("multipart/");
}

} // namespace

QNetworkReply *UploadAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                           QIODevice *body)
{
    if (operation == PostOperation && body && isUpload(request))
        return new UploadReply(request, *body, this);
    return QNetworkAccessManager::createRequest(operation, request, body);
}
