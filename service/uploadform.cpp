// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/uploadform.h"

#include "service/frozenfile.h"

#include <QHttpMultiPart>

namespace {

QHttpPart partWith(const QString &disposition)
{
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader, disposition);
    return part;
}

} // namespace

QString fileDisposition(const QString &fileName)
{
    QString name = fileName;
    name.replace(u'"', QLatin1String("%22"));
    name.replace(u'\r', QLatin1String("%0D"));
    name.replace(u'\n', QLatin1String("%0A"));

    return QLatin1String("form-data; name=\"uploadedFile\"; filename=\"") + name + u'"';
}

std::unique_ptr<QHttpMultiPart> uploadForm(std::unique_ptr<FrozenFile> file,
                                           const FormFields &fields)
{
    auto form = std::make_unique<QHttpMultiPart>(QHttpMultiPart::FormDataType);
    QHttpPart filePart = partWith(fileDisposition(file->fileName()));
    file->setParent(form.get());
    filePart.setBodyDevice(file.release());
    form->append(filePart);
    for (const auto &[name, value] : fields) {
        QHttpPart part = partWith(QStringLiteral("form-data; name=\"%1\"").arg(name));
        part.setBody(value.toUtf8());
        form->append(part);
    }
    return form;
}
