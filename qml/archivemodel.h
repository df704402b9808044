// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractListModel>
#include <QQmlEngine>
#include <QVariantList>

/// Declares the model's base type for qmllint, which Qt 6.4 does not.
struct ItemModelType
{
    Q_GADGET
    QML_FOREIGN(QAbstractItemModel)
    QML_ANONYMOUS
};

/// The rows of the archive's list. Unlike a ListModel it is fast enough for ten thousand of them.
class ArchiveModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return int(m_rows.size()); }

    /// Replaces the rows with a list of maps, whose keys are the roles.
    Q_INVOKABLE void setRows(const QVariant &rows);
    /// Changes one value; does nothing for a row or role that does not exist.
    Q_INVOKABLE void setValue(int row, const QString &role, const QVariant &value);

signals:
    void countChanged();

private:
    QList<QVariantMap> m_rows;
};
