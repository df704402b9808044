// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "qml/archivemodel.h"

#include <QJSValue>

#include <algorithm>

namespace {

struct Role
{
    const char *name;
    QVariant unset; ///< default if the key is missing; also defines the type
};

const QList<Role> &roles()
{
    static const QList<Role> list{
        {"name", QString()},          {"deleted", QString()},  {"instrument", QString()},
        {"extension", QString()},     {"demoFile", QString()}, {"demoUser", QString()},
        {"btnInstrument", QString()}, {"btnMix", QString()},   {"isVideo", false},
        {"isUsable", true},           {"chosen", QString()}};
    return list;
}

qsizetype roleOf(const QString &name)
{
    const auto role = std::ranges::find_if(
        roles(), [&](const Role &candidate) { return name == QLatin1String(candidate.name); });
    return role - roles().begin();
}

} // namespace

int ArchiveModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ArchiveModel::data(const QModelIndex &index, int role) const
{
    const qsizetype which = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || which < 0 || which >= roles().size())
        return {};
    const Role &known = roles().at(which);
    return m_rows.at(index.row()).value(QLatin1String(known.name), known.unset);
}

QHash<int, QByteArray> ArchiveModel::roleNames() const
{
    QHash<int, QByteArray> names;
    for (const Role &role : roles())
        names.insert(Qt::UserRole + int(names.size()), role.name);
    return names;
}

void ArchiveModel::setRows(const QVariant &rows)
{
    const bool isScriptValue = rows.metaType() == QMetaType::fromType<QJSValue>();
    const QVariantList list = (isScriptValue ? rows.value<QJSValue>().toVariant() : rows).toList();
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(list.size());
    for (const QVariant &row : list)
        m_rows << row.toMap();
    endResetModel();
    emit countChanged();
}

void ArchiveModel::setValue(int row, const QString &role, const QVariant &value)
{
    const qsizetype which = roleOf(role);
    if (row < 0 || row >= m_rows.size() || which == roles().size())
        return;
    m_rows[row].insert(role, value);
    const QModelIndex changed = index(row);
    emit dataChanged(changed, changed, {Qt::UserRole + int(which)});
}
