// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QStringList>

/// The words that the views share with the rest of the program and with the processing service.
class Vocabulary final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString none READ none CONSTANT)
    Q_PROPERTY(QStringList audioFormats READ audioFormats CONSTANT)
    Q_PROPERTY(QStringList allFormats READ allFormats CONSTANT)

public:
    using QObject::QObject;

    /// Stands for no choice.
    [[nodiscard]] QString none() const;
    [[nodiscard]] QStringList audioFormats() const;
    /// Those with a picture first.
    [[nodiscard]] QStringList allFormats() const;

    /// Whether that layer of the processing window shows a run in progress.
    Q_INVOKABLE [[nodiscard]] bool isBusy(const QString &layer) const;
    /// Takes upper or lower case; the archive uses lower case.
    Q_INVOKABLE [[nodiscard]] bool isAudio(const QString &format) const;
};
