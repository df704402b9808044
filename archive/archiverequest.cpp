// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archiverequest.h"

#include "service/replies.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct ArchiveRequest
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveRequest)
};

} // namespace

ArchiveAnswer fetchArchive(AccountClient &account, const QString &hash)
{
    return archiveAnswer(account.postAndWait(QStringLiteral("auth/archive.php"),
                                             {{QStringLiteral("hash"), hash}}, maxArchiveBytes));
}

ArchiveAnswer archiveAnswer(const AccountAnswer &answer)
{
    if (answer.kind != AccountAnswer::Kind::Answered)
        return {truncatedForDisplay(answer.text), {}};
    const QByteArray json = answer.text.toUtf8();
    if (json.size() >= maxArchiveBytes)
        return {ArchiveRequest::tr("The service's list of files is too long to be shown."), {}};
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isArray())
        return {{}, document.array().toVariantList()};
    if (answer.text.trimmed().isEmpty())
        return {ArchiveRequest::tr("The service returned an empty answer."), {}};
    return {truncatedForDisplay(answer.text), {}};
}
