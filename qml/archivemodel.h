// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractListModel>
#include <QQmlEngine>
#include <QVariantList>

/// Tells the linter of the views what the model is, which Qt 6.4 leaves out.
struct ItemModelType
{
    Q_GADGET
    QML_FOREIGN(QAbstractItemModel)
    QML_ANONYMOUS
};

/// The rows of the archive's list. Unlike a ListModel it takes ten thousand of them at once.
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

    /// Takes a list of maps, whose keys are the roles, instead of the rows so far.
    Q_INVOKABLE void setRows(const QVariant &rows);
    /// Changes one value; nothing for a row or role that does not exist.
    Q_INVOKABLE void setValue(int row, const QString &role, const QVariant &value);

signals:
    void countChanged();

private:
    QList<QVariantMap> m_rows;
};
