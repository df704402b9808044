// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QUrl>

/// Reports which pictures exist; Image would warn about missing files.
class PictureFiles final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The same address, or an empty one when it names a file or resource that does not exist.
    [[nodiscard]] Q_INVOKABLE QUrl existing(const QUrl &url) const;
};
