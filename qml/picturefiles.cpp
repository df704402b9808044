// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "qml/picturefiles.h"

#include <QFile>
#include <QQmlFile>

QUrl PictureFiles::existing(const QUrl &url) const
{
    return QFile::exists(QQmlFile::urlToLocalFileOrQrc(url)) ? url : QUrl();
}
